#include "storeuser.h"

#include "model/projectcode.h"
#include "model/task.h"
#include "model/tasktemplate.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

StoreUser::StoreUser(const QString &path, const Contents &contents)
    : m_container(path, m_clock, SaveDelays{1h, 0ms})
    , m_day(m_container.mainContext(), m_clock.calendar().dayInterval(m_clock.now()))
    , m_contents(contents)
    , m_possible{contents}
{
}

bool StoreUser::seesAllTasks() const
{
    QStringList expected;
    for (const QString &record : m_contents) {
        if (record.contains("|task|"_L1))
            expected << record;
    }
    QStringList shown;
    for (const Task *task : m_day.tasks())
        shown << describe(*task);
    expected.sort();
    shown.sort();
    return shown == expected;
}

void StoreUser::work()
{
    auto *const task = insert<Task>(u"ny"_s, m_clock.now(), u"4711"_s, 7);
    save();
    if (Task *const seen = find(u"a"_s))
        edit(seen, [&] { seen->setName(u"omdøbt"_s); });
    if (Task *const seen = find(u"b"_s)) {
        m_contents.remove(seen->id());
        context().remove(seen);
    }
    save();
    insert<TaskTemplate>(u"skabelon 2"_s, 1);
    insert<ProjectCode>(u"4712"_s, u""_s, 1);
    edit(task, [&] { task->start(); });
    save();
    m_clock.advance(61);
    edit(task, [&] { task->stop(); });
    if (Task *const seen = find(u"c"_s))
        edit(seen, [&] { seen->start(); });
    save();
}

void StoreUser::workALot()
{
    auto *const task = insert<Task>(u"stor"_s, m_clock.now(), std::nullopt);
    save();
    edit(task, [&] { task->setName(QString(4'300'000, u'x')); });
    save();
    edit(task, [&] { task->setName(u"igen lille"_s); });
    save();
}

Task *StoreUser::find(const QString &name) const
{
    const QList<Task *> &tasks = m_day.tasks();
    const auto found = std::find_if(tasks.cbegin(), tasks.cend(),
                                    [&](const Task *task) { return task->name() == name; });
    return found != tasks.cend() ? *found : nullptr;
}

template<class T, class... Arguments>
T *StoreUser::insert(Arguments &&...arguments)
{
    auto record = std::make_unique<T>(m_clock, std::forward<Arguments>(arguments)...);
    T *const inserted = record.get();
    m_contents.insert(inserted->id(), describe(*inserted));
    context().insert(std::move(record));
    return inserted;
}

template<class Change>
void StoreUser::edit(const Record *record, Change change)
{
    change();
    m_contents.insert(record->id(), describe(*record));
}

void StoreUser::save()
{
    m_possible.append(m_contents);
    if (context().save())
        m_possible = {m_contents};
}
