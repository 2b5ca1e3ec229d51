#include <desktop/transfers/ElidedLabel.h>

#include <QStyle>
#include <QStylePainter>

namespace desktop {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::setText(const QString &text)
{
    QLabel::setText(text);
    setToolTip(text);
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const QRect area = contentsRect().marginsRemoved({indent(), 0, 0, 0});
    painter.drawItemText(area, int(alignment()), palette(), isEnabled(),
                         fontMetrics().elidedText(text(), Qt::ElideRight, area.width()),
                         foregroundRole());
}

} // namespace desktop
