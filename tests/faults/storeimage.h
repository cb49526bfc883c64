#pragma once

#include "model/modelcontainer.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QUuid>

/// A store's files, by what follows the store's own path: "", "-wal", …
using StoreImage = QMap<QString, QByteArray>;

/// The files of the store at @p path, but for an empty log, and for the log's index and the
/// reserve, which are made anew. If this process has the store open, it no longer keeps others from
/// it.
StoreImage readImage(const QString &path);
/// Makes those files, and the directory for them.
void writeImage(const QString &path, const StoreImage &image);

/// Every record of a store, put into words, by its id.
using Contents = QHash<QUuid, QString>;

/// All properties of @p record.
QString describe(const Record &record);
/// What @p context shows. Throws StoreError if the store cannot be read, or has a record twice.
Contents contentsOf(ModelContext &context);
/// What a program that opens these files would show. Throws StoreError if they cannot be opened,
/// or are damaged.
Contents contentsOf(const StoreImage &image);
/// Whether what a program that opens these files would show is one of @p possible; says on standard
/// error what is wrong.
bool isOneOf(const StoreImage &image, const QList<Contents> &possible);
