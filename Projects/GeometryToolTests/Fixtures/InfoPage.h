#pragma once

#include "Places.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

/// \brief The page that tells what "info --json" prints.
class InfoPage
{
public:
    /// \brief The keys of the table behind a line of the page, sorted.
    static QStringList keys(const QString& heading)
    {
        QFile file(Places::documentation() + QStringLiteral("/ovrageo.md"));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QString page = QString::fromUtf8(file.readAll());
        page = page.mid(page.indexOf(heading)).section(QStringLiteral("\n\n"), 1, 1);
        QStringList found;
        const QStringList rows = page.split(QLatin1Char('\n')).mid(2);
        for (const QString& row : rows) {
            static const QRegularExpression key(QStringLiteral("`(\\w+)`"));
            auto each = key.globalMatch(row.section(QLatin1Char('|'), 1, 1));
            while (each.hasNext()) {
                found.append(each.next().captured(1));
            }
        }
        found.sort();
        return found;
    }
};
