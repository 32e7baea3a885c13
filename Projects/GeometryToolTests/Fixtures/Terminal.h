#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

/// \brief A terminal without a screen: what is printed on it can be read back.
class Terminal
{
public:
    Terminal()
        : master_(posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) {
            name_ = ptsname(master_);
            slave_ =
                open(name_.constData(), O_RDWR | O_NOCTTY); // keeps the text when the tool is gone
        }
        if (slave_ < 0) {
            failure_ = std::strerror(errno);
        }
    }

    ~Terminal()
    {
        close(slave_);
        close(master_);
    }

    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    QString name() const { return QString::fromLocal8Bit(name_); }

    /// \brief Why no terminal can be had, as in a container without /dev/pts; empty where one can.
    static QByteArray obstacle()
    {
        const QByteArray reason = Terminal().failure_;
        return reason.isEmpty() ? reason : "no pseudo-terminal can be had here: " + reason;
    }

    /// \brief What has been printed since the last call.
    QByteArray text() const
    {
        fcntl(master_, F_SETFL, O_NONBLOCK);
        std::array<char, 4096> buffer;
        QByteArray text;
        ssize_t size = 0;
        while ((size = read(master_, buffer.data(), buffer.size())) > 0) {
            text.append(buffer.data(), size);
        }
        return text;
    }

private:
    int master_;
    int slave_ = -1;
    QByteArray name_;
    QByteArray failure_;
};
