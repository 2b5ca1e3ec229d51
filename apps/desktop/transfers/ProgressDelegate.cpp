#include <desktop/transfers/ProgressDelegate.h>

#include <desktop/transfers/TransferModel.h>

#include <QApplication>
#include <QPainter>
#include <QStyleOptionProgressBar>

namespace desktop {

namespace {

constexpr int Margin = 2;

} // namespace

void ProgressDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QVariant percent = index.data(TransferModel::PercentRole);
    if (!percent.isValid())
        return;
    QStyleOptionProgressBar bar;
    bar.palette = option.palette;
    bar.direction = option.direction;
    bar.fontMetrics = option.fontMetrics;
    bar.state = option.state | QStyle::State_Horizontal;
    bar.rect = option.rect.adjusted(Margin, Margin, -Margin, -Margin);
    bar.minimum = 0;
    bar.maximum = 100;
    bar.progress = percent.toInt();
    bar.text = tr("%1 %").arg(percent.toInt());
    bar.textVisible = true;
    bar.textAlignment = Qt::AlignCenter;
    QApplication::style()->drawControl(QStyle::CE_ProgressBar, &bar, painter);
}

} // namespace desktop
