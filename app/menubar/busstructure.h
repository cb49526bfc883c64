#pragma once

#include <QDBusArgument>

#include <tuple>

/// A type that the bus carries as a structure. Its function template `members` ties its members in
/// their order there.
template<class T>
concept BusStructure = requires(T &value)
{
    T::members(value);
};

template<BusStructure T>
QDBusArgument &operator<<(QDBusArgument &argument, const T &value)
{
    argument.beginStructure();
    std::apply([&](const auto &...members) { (argument << ... << members); }, T::members(value));
    argument.endStructure();
    return argument;
}

template<BusStructure T>
const QDBusArgument &operator>>(const QDBusArgument &argument, T &value)
{
    argument.beginStructure();
    std::apply([&](auto &...members) { (argument >> ... >> members); }, T::members(value));
    argument.endStructure();
    return argument;
}
