#pragma once

#include <QSize>
#include <QStyledItemDelegate>

namespace desktop {

//! \brief Edits a name in place, with its part before the suffix selected. May give all entries one size.
class NameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    //! Every entry is as large as \a size, also while it has not been fetched.
    NameDelegate(const QSize &size, QObject *parent) : QStyledItemDelegate(parent), m_size(size) {}

    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    const QSize m_size; // invalid for that of the content
};

} // namespace desktop
