#pragma once

#include <string>

/// Room on the disk that is kept for a store: a file beside it that holds nothing and takes up
/// blocks. On a full disk it is given up, so that what is unsaved can be written all the same.
class Reserve
{
public:
    /// In bytes.
    static constexpr int size = 256 * 1024;

    /// That of the store at @p storePath. Nothing is done yet.
    explicit Reserve(const std::string &storePath);

    /// Takes the room up, unless that has been done before. False if there is not enough.
    bool takeUp();
    /// Gives the room back. False if none was taken up.
    bool giveUp();

private:
    std::string m_name;
    bool m_isThere = false;
};
