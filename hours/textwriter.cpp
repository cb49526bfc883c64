#include "hours/textwriter.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace
{

constexpr qsizetype pieceSize = 65536;

std::string explained(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return "disken er fuld";
    case EPIPE:
        return "modtageren er væk";
    default:
        return std::strerror(error);
    }
}

} // namespace

WriteError::WriteError(int error)
    : std::runtime_error("Timerne kunne ikke skrives: " + explained(error) + ".")
    , m_isForWantOfAReader(error == EPIPE)
{
}

TextWriter::TextWriter(int descriptor)
    : m_descriptor(descriptor)
{
}

void TextWriter::write(QStringView text)
{
    m_buffer += text.toUtf8();
    if (m_buffer.size() >= pieceSize)
        finish();
}

void TextWriter::finish()
{
    qsizetype done = 0;
    while (done < m_buffer.size()) {
        const ssize_t written = ::write(m_descriptor, m_buffer.constData() + done,
                                        static_cast<std::size_t>(m_buffer.size() - done));
        if (written >= 0)
            done += written;
        else if (errno != EINTR)
            throw WriteError(errno);
    }
    m_buffer.resize(0);
}
