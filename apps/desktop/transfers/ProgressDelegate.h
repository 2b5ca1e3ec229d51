#pragma once

#include <QStyledItemDelegate>

namespace desktop {

//! \brief Draws TransferModel::PercentRole as a bar.
class ProgressDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace desktop
