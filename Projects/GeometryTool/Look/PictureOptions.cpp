#include "PictureOptions.h"

#include "ToolError.h"

#include <QRegularExpression>

#include <cmath>

namespace Ovra::GeoTool
{

void PictureOptions::setSize(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,6})x(\\d{1,6})$"));
    const auto match = form.match(text);
    width = match.captured(1).toInt();
    height = match.captured(2).toInt();
    const auto fits = [](int side) { return side >= SmallestSide && side <= LargestSide; };
    if (!fits(width) || !fits(height)) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("--size must be two numbers of pixels from %1 to %2, such as "
                           "1600x1000, not \"%3\"")
                .arg(SmallestSide)
                .arg(LargestSide)
                .arg(text));
    }
}

void PictureOptions::setCut(const QString& text)
{
    const int axis = static_cast<int>(QStringLiteral("xyz").indexOf(text.section('=', 0, 0)));
    bool isNumber = false;
    const double at = text.section(QLatin1Char('='), 1).toDouble(&isNumber);
    if (axis < 0 || text.indexOf(QLatin1Char('=')) != 1 || !isNumber || !std::isfinite(at)) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("--clip must be an axis and a place on it, such as x=0.05, "
                                       "not \"%1\"")
                            .arg(text));
    }
    cut = Cut{axis, at};
}

} // namespace Ovra::GeoTool
