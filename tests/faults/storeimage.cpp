#include "storeimage.h"

#include "../support/fakeclock.h"
#include "model/projectcode.h"
#include "model/recordtable.h"
#include "model/task.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

StoreImage readImage(const QString &path)
{
    StoreImage image;
    const QFileInfo store(path);
    const QStringList names =
        store.dir().entryList({store.fileName() + u'*'}, QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        QFile file(store.dir().filePath(name));
        if (name.endsWith("-shm"_L1) || name.endsWith("-reserve"_L1) ||
            (name != store.fileName() && file.size() == 0))
            continue;
        if (file.open(QIODevice::ReadOnly))
            image.insert(name.mid(store.fileName().size()), file.readAll());
    }
    return image;
}

void writeImage(const QString &path, const StoreImage &image)
{
    QDir().mkpath(QFileInfo(path).path());
    for (auto part = image.cbegin(); part != image.cend(); ++part) {
        QFile file(path + part.key());
        if (!file.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner) ||
            file.write(*part) != part->size())
            qFatal("A test's file cannot be written");
    }
}

QString describe(const Record &record)
{
    // As many digits as tell it from all other numbers.
    const auto number = [](double value) {
        return QString::number(value, 'g', QLocale::FloatingPointShortest);
    };
    QStringList words{QString::number(record.sortOrder()), number(record.createdAt())};
    switch (record.recordType()) {
    case RecordType::Task: {
        const auto &task = static_cast<const Task &>(record);
        const auto start = task.lastStartTime();
        words << u"task"_s << task.name() << number(task.date())
              << QString::number(task.accumulatedSeconds())
              << (start ? number(*start) : u"stopped"_s)
              << task.projectCode().value_or(u"no code"_s);
        break;
    }
    case RecordType::TaskTemplate:
        words << u"template"_s << static_cast<const TaskTemplate &>(record).name();
        break;
    case RecordType::ProjectCode: {
        const auto &code = static_cast<const ProjectCode &>(record);
        words << u"code"_s << code.code() << code.name();
        break;
    }
    }
    return words.join(u'|');
}

Contents contentsOf(ModelContext &context)
{
    Contents contents;
    for (const RecordType type : recordTypes) {
        const QList<Record *> records = context.fetch(type, allRecords());
        for (const Record *record : records) {
            if (contents.contains(record->id()))
                throw StoreError("A record is there twice");
            contents.insert(record->id(), describe(*record));
        }
    }
    return contents;
}

Contents contentsOf(const StoreImage &image)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"store.sqlite"_s);
    writeImage(path, image);
    Contents contents;
    {
        const FakeClock clock;
        ModelContainer container(path, clock);
        contents = contentsOf(container.mainContext());
    }
    SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READONLY);
    const std::string verdict = database.execAndGet("PRAGMA integrity_check").getString();
    if (verdict != "ok")
        throw StoreError(verdict);
    return contents;
}

bool isOneOf(const StoreImage &image, const QList<Contents> &possible)
{
    try {
        const Contents contents = contentsOf(image);
        if (possible.contains(contents))
            return true;
        qCritical() << "The files hold" << contents << "and not one of" << possible;
    } catch (const StoreError &error) {
        qCritical() << "The files cannot be used:" << error.what();
    }
    return false;
}
