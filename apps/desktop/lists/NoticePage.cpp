#include <desktop/lists/NoticePage.h>

#include <QAbstractItemModel>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace desktop {

NoticePage::NoticePage(QAbstractItemModel *model, QWidget *parent)
    : QWidget(parent), m_model(model), m_title(new QLabel), m_text(new QLabel),
      m_button(new QPushButton)
{
    setObjectName(QStringLiteral("notice"));
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus); // so that the keys of the list work
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto *const layout = new QVBoxLayout(this);
    layout->addStretch(2);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    m_title->setFont(font);
    for (QLabel *const label : {m_title, m_text}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    layout->addSpacing(8);
    layout->addWidget(m_button, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    connect(m_button, &QPushButton::clicked, this, &NoticePage::accepted);
}

void NoticePage::say(const QString &title, const QString &text, const QString &button)
{
    m_title->setText(title);
    m_text->setText(text);
    m_button->setText(button);
    m_button->setVisible(!button.isEmpty());
    setAccessibleName(title + QLatin1Char(' ') + text);
}

QString NoticePage::title() const
{
    return m_title->text();
}

void NoticePage::dragEnterEvent(QDragEnterEvent *event)
{
    if (m_model->canDropMimeData(event->mimeData(), event->dropAction(), -1, -1, {}))
        event->acceptProposedAction();
}

void NoticePage::dropEvent(QDropEvent *event)
{
    m_model->dropMimeData(event->mimeData(), event->dropAction(), -1, -1, {});
    event->acceptProposedAction();
}

} // namespace desktop
