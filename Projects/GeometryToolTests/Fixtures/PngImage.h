#pragma once

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <vector>

/// \brief A picture of three bytes a pixel, as the tool writes them, taken out of its PNG file.
class PngImage
{
public:
    explicit PngImage(const QByteArray& file)
    {
        if (!file.startsWith("\x89PNG\r\n\x1a\n") || file.mid(24, 2) != QByteArray("\x08\x02")) {
            return;
        }
        width_ = static_cast<int>(qFromBigEndian<quint32>(file.constData() + 16));
        height_ = static_cast<int>(qFromBigEndian<quint32>(file.constData() + 20));
        unfilter(qUncompress(QByteArray(4, '\0') + packedLines(file)));
    }

    bool isValid() const { return !bytes_.empty(); }
    int width() const { return width_; }
    int height() const { return height_; }

    using Colour = std::array<int, 3>;

    Colour at(int x, int y) const
    {
        const std::size_t first =
            static_cast<std::size_t>(y) * stride() + 3 * static_cast<std::size_t>(x);
        return {bytes_[first], bytes_[first + 1], bytes_[first + 2]};
    }

    /// \brief The number of pixels for which \p condition holds.
    template <typename Condition>
    int count(Condition condition) const
    {
        int number = 0;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                number += condition(at(x, y)) ? 1 : 0;
            }
        }
        return number;
    }

    /// \brief A part of a picture, in pixels from its upper left corner.
    struct Part
    {
        int x;
        int y;
        int width;
        int height;
    };

    /// \brief Puts a part of this picture in place of one that begins at a line \p y of it.
    PngImage withPartAt(const Part& part, int y) const
    {
        PngImage result = *this;
        for (int line = 0; line < part.height; ++line) {
            const auto begin = bytes_.begin() + offset(part.x, part.y + line);
            std::copy(begin, begin + 3 * part.width,
                      result.bytes_.begin() + offset(part.x, y + line));
        }
        return result;
    }

    /// \brief The mean difference of the channels, from 0 to 255, of both pictures in squares of
    /// \p side pixels: what a reader sees of one, not how a driver rounds.
    static double difference(const PngImage& a, const PngImage& b, int side)
    {
        const std::vector<double> all = differences(a, b, {0, 0, a.width_, a.height_}, side);
        return std::accumulate(all.begin(), all.end(), 0.0) / static_cast<double>(all.size());
    }

    /// \brief The same in the square of a part in which they differ most.
    static double largestDifference(const PngImage& a, const PngImage& b, const Part& part,
                                    int side)
    {
        const std::vector<double> all = differences(a, b, part, side);
        return *std::max_element(all.begin(), all.end());
    }

private:
    std::size_t stride() const { return 3 * static_cast<std::size_t>(width_); }

    std::ptrdiff_t offset(int x, int y) const
    {
        return static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y) * stride()) + 3 * x;
    }

    static std::vector<double> differences(const PngImage& a, const PngImage& b, const Part& part,
                                           int side)
    {
        if (a.width_ != b.width_ || a.height_ != b.height_ || !a.isValid()) {
            return {255.0};
        }
        std::vector<double> all;
        for (int y = part.y; y + side <= part.y + part.height; y += side) {
            for (int x = part.x; x + side <= part.x + part.width; x += side) {
                const Means one = a.means(x, y, side);
                const Means other = b.means(x, y, side);
                double sum = 0.0;
                for (std::size_t channel = 0; channel < one.size(); ++channel) {
                    sum += std::abs(one[channel] - other[channel]) / 3.0;
                }
                all.push_back(sum);
            }
        }
        return all;
    }

    static QByteArray packedLines(const QByteArray& file)
    {
        QByteArray packed;
        for (qsizetype at = 8; at + 12 <= file.size();) {
            const auto length = qFromBigEndian<quint32>(file.constData() + at);
            if (file.mid(at + 4, 4) == "IDAT") {
                packed += file.mid(at + 8, length);
            }
            at += 12 + static_cast<qsizetype>(length);
        }
        return packed;
    }

    static int predicted(int filter, int left, int above, int corner)
    {
        const int estimate = left + above - corner;
        const int toLeft = std::abs(estimate - left);
        const int toAbove = std::abs(estimate - above);
        const int toCorner = std::abs(estimate - corner);
        switch (filter) {
        case 1:
            return left;
        case 2:
            return above;
        case 3:
            return (left + above) / 2;
        case 4:
            return toLeft <= toAbove && toLeft <= toCorner ? left
                   : toAbove <= toCorner                   ? above
                                                           : corner;
        default:
            return 0;
        }
    }

    void unfilter(const QByteArray& lines)
    {
        if (lines.size() != static_cast<qsizetype>((stride() + 1)) * height_) {
            return;
        }
        bytes_.resize(stride() * static_cast<std::size_t>(height_));
        for (std::size_t y = 0; y < static_cast<std::size_t>(height_); ++y) {
            const auto* const line =
                reinterpret_cast<const uchar*>(lines.constData()) + y * (stride() + 1);
            for (std::size_t i = 0; i < stride(); ++i) {
                const std::size_t place = y * stride() + i;
                const int left = i < 3 ? 0 : bytes_[place - 3];
                const int above = y == 0 ? 0 : bytes_[place - stride()];
                const int corner = i < 3 || y == 0 ? 0 : bytes_[place - stride() - 3];
                bytes_[place] =
                    static_cast<uchar>(line[1 + i] + predicted(line[0], left, above, corner));
            }
        }
    }

    using Means = std::array<double, 3>;

    // Each channel by itself: blue in place of orange would have the same brightness.
    Means means(int x, int y, int side) const
    {
        Means sums = {};
        for (int j = y; j < y + side; ++j) {
            for (int i = x; i < x + side; ++i) {
                const Colour colour = at(i, j);
                for (std::size_t channel = 0; channel < sums.size(); ++channel) {
                    sums[channel] += colour[channel] / (1.0 * side * side);
                }
            }
        }
        return sums;
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<uchar> bytes_;
};
