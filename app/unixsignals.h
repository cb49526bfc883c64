#pragma once

class QObject;

/// Quits the application, as its own quit does, on SIGTERM, SIGINT and SIGHUP, while @p parent
/// lives.
void quitOnUnixSignals(QObject *parent);
