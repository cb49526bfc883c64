#pragma once

#include <QQuickWindow>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQmlEngine;

/// Makes the window that the QML file at @p url describes, with @p properties; it belongs to the
/// caller. The file is part of the program, so that it cannot be made is fatal.
std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine &engine, const QUrl &url,
                                         const QVariantMap &properties);
