#pragma once

#include <QMimeData>
#include <QStringList>

#include <functional>
#include <optional>

namespace desktop {

//! \brief Dragged documents: identifiers for windows of this program, files for other programs.
//!
//! The files are downloaded when another program requests them.
class DraggedDocuments : public QMimeData
{
    Q_OBJECT

public:
    using Fetch = std::function<QStringList()>;

    //! \param fetch returns the local paths, or an empty list if it fails
    DraggedDocuments(const QString &projectId, const QStringList &ids, const Fetch &fetch);

    QStringList formats() const override;
    bool hasFormat(const QString &type) const override;

protected:
    QVariant retrieveData(const QString &type, QVariant::Type wanted) const override;

private:
    const Fetch m_fetch;
    mutable std::optional<QVariantList> m_urls;
};

} // namespace desktop
