#include "Dice.h"

#include <QStringList>

namespace {

constexpr int SmallBytes = 40'000;
constexpr int LargeBytes = 12'000'000;

const QStringList &names()
{
    static const QStringList list{
        QStringLiteral("a.txt"),
        QStringLiteral("b.txt"),
        QStringLiteral("plan.dwg"),
        QStringLiteral("plan(2).dwg"),
        QStringLiteral("no suffix"),
        QStringLiteral(".hidden"),
        QStringLiteral("100 % & more + #1.txt"),
        QStringLiteral("结构图纸.dwg"),
        QStringLiteral("رسم الجسر.pdf"),
        QStringLiteral("picture.png"),
        QStringLiteral("tar.gz.tar.gz"),
        QStringLiteral("x") + QString(180, QLatin1Char('l')) + QStringLiteral(".txt"),
    };
    return list;
}

const QStringList &texts()
{
    static const QStringList list{
        QString(),
        QStringLiteral(" "),
        QStringLiteral("/"),
        QStringLiteral("a/b"),
        QStringLiteral(".."),
        QStringLiteral("*"),
        QStringLiteral("?lan"),
        QStringLiteral("(["),
        QStringLiteral("\\"),
        QStringLiteral("%1 %n &x"),
        QStringLiteral("<b>bold</b>"),
        QStringLiteral("two\nlines"),
        QString(300, QLatin1Char('w')),
        QString(QChar(0xD800)), // half of a character
    };
    return list;
}

} // namespace

Dice::Dice(quint32 seed, quint32 step)
{
    const quint32 numbers[] = {seed, step};
    m_random = QRandomGenerator(numbers, 2);
}

QString Dice::name()
{
    return pick(names());
}

QString Dice::text()
{
    return chance(50) ? name() : pick(texts());
}

int Dice::size()
{
    return chance(3) ? LargeBytes : roll(SmallBytes);
}
