#include <desktop/lists/NameDelegate.h>

#include <models/VellModelRole.h>

#include <QLineEdit>

namespace desktop {

void NameDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *const line = qobject_cast<QLineEdit *>(editor);
    if (!line || line->isModified())
        return; // an update of the document must not replace the typed text
    QStyledItemDelegate::setEditorData(editor, index);
    const QString name = line->text();
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || index.data(VellModelRole::IsFolder).toBool())
        return;
    // The view selects the whole text after this call.
    QMetaObject::invokeMethod(
        line, [line, dot] { line->setSelection(0, dot); }, Qt::QueuedConnection);
}

void NameDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (m_size.isValid())
        option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop; // next to the icon
}

QSize NameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return m_size.isValid() ? m_size : QStyledItemDelegate::sizeHint(option, index);
}

} // namespace desktop
