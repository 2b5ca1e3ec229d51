#pragma once

#include <QStyledItemDelegate>

namespace desktop {

//! \brief Edits a name in place, with its part before the suffix selected.
class NameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
};

} // namespace desktop
