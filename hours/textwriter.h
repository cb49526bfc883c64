#pragma once

#include <QByteArray>
#include <QStringView>

#include <stdexcept>

/// Something could not be written; what() says why, in Danish.
class WriteError : public std::runtime_error
{
public:
    /// For @p error, an errno.
    explicit WriteError(int error);

    /// Whether whoever was to read it has gone, of which nobody needs to be told.
    bool isForWantOfAReader() const { return m_isForWantOfAReader; }

private:
    bool m_isForWantOfAReader;
};

/// Writes texts to a file descriptor, as UTF-8 and in large pieces.
class TextWriter
{
public:
    /// @p descriptor stays open, and belongs to somebody else.
    explicit TextWriter(int descriptor);

    /// May throw WriteError, also for what was written before.
    void write(QStringView text);
    /// Writes what is left; throws WriteError. Without this call it is lost.
    void finish();

private:
    int m_descriptor;
    QByteArray m_buffer;
};
