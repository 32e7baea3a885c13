#pragma once

#include <QLocale>

#include <clocale>

/// \brief Numbers with a decimal comma everywhere that a locale can be set, for as long as this
/// lives.
class GermanLocale
{
public:
    GermanLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    ~GermanLocale()
    {
        QLocale::setDefault(QLocale::c());
        std::setlocale(LC_ALL, "C");
    }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;
};
