#pragma once

#include <QQuickWindow>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQmlEngine;

/// Makes the window that the QML file at @p url describes, with @p properties; it belongs to the
/// caller. The file is a part of the program, so it is a fatal error if it cannot be loaded.
std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine &engine, const QUrl &url,
                                         const QVariantMap &properties);
