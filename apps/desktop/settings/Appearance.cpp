#include <desktop/settings/Appearance.h>

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>

#include <array>

namespace desktop {

namespace {

struct RoleColors
{
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array<RoleColors, 15> Colors{{
    {QPalette::Window, 0xfff3f4f6, 0xff35383c},
    {QPalette::WindowText, 0xff1c1e21, 0xffe8eaed},
    {QPalette::Base, 0xffffffff, 0xff1d1f21},
    {QPalette::AlternateBase, 0xfff7f8fa, 0xff25282b},
    {QPalette::Text, 0xff1c1e21, 0xffe8eaed},
    {QPalette::Button, 0xfff0f1f3, 0xff43474c},
    {QPalette::ButtonText, 0xff1c1e21, 0xffe8eaed},
    {QPalette::BrightText, 0xffb3261e, 0xffff8a80},
    {QPalette::ToolTipBase, 0xffffffff, 0xff484c51},
    {QPalette::ToolTipText, 0xff1c1e21, 0xffe8eaed},
    {QPalette::PlaceholderText, 0xff6b7075, 0xff9aa0a6},
    {QPalette::Highlight, 0xff1f6feb, 0xff2f6fd0},
    {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    {QPalette::Link, 0xff1a5fcc, 0xff8ab4f8},
    {QPalette::LinkVisited, 0xff6b3fa0, 0xffc58af9},
}};

constexpr QRgb DisabledLight = 0xff8e9398;
constexpr QRgb DisabledDark = 0xff8b9196;

QPalette paletteOf(bool isDark)
{
    const QRgb button = isDark ? 0xff43474c : 0xfff0f1f3;
    const QRgb window = isDark ? 0xff35383c : 0xfff3f4f6;
    QPalette palette(QColor::fromRgb(button), QColor::fromRgb(window)); // with matching bevels
    for (const RoleColors &colors : Colors)
        palette.setColor(colors.role, QColor::fromRgb(isDark ? colors.dark : colors.light));
    const QColor disabled = QColor::fromRgb(isDark ? DisabledDark : DisabledLight);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

} // namespace

void appearance::apply(AppSettings::ColorScheme scheme)
{
    static const QPalette systemPalette = QApplication::palette();
    static const QString systemStyle = QApplication::style()->objectName();
    const bool isSystem = scheme == AppSettings::ColorScheme::System;
    // Only this style uses the colours of the palette for everything.
    QApplication::setStyle(
        QStyleFactory::create(isSystem ? systemStyle : QStringLiteral("fusion")));
    const QPalette palette =
        isSystem ? systemPalette : paletteOf(scheme == AppSettings::ColorScheme::Dark);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

} // namespace desktop
