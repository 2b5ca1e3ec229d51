#pragma once

#include <QSize>
#include <QStyledItemDelegate>

namespace desktop {

//! \brief Edits a name in place; the part before the suffix is selected. Can set the same size for all entries.
class NameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    //! Sets \a size for all entries, also for those that have not been loaded.
    NameDelegate(const QSize &size, QObject *parent) : QStyledItemDelegate(parent), m_size(size) {}

    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    const QSize m_size; // if invalid, that of the content
};

} // namespace desktop
