#include <desktop/window/MessageBar.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace desktop {

MessageBar::MessageBar(const QString &name, QWidget *parent)
    : QFrame(parent), m_icon(new QLabel), m_text(new QLabel), m_button(new QPushButton)
{
    setObjectName(name);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(m_icon);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_button);
    auto *const close = new QToolButton;
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close this message"));
    layout->addWidget(close);
    connect(m_button, &QPushButton::clicked, this, &MessageBar::accepted);
    connect(close, &QToolButton::clicked, this, [this] {
        hide();
        Q_EMIT closed();
    });
    hide();
}

void MessageBar::say(Kind kind, const QString &text, const QString &button)
{
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    const auto icon =
        kind == Kind::Warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    m_icon->setPixmap(style()->standardIcon(icon).pixmap(side));
    m_text->setText(text);
    m_button->setText(button);
    m_button->setVisible(!button.isEmpty());
    show();
    setAccessibleName(text);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString MessageBar::text() const
{
    return isHidden() ? QString() : m_text->text();
}

} // namespace desktop
