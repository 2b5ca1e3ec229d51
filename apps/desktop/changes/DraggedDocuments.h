#pragma once

#include <QMimeData>
#include <QStringList>

#include <functional>
#include <optional>

namespace desktop {

//! \brief Documents that are dragged: identifiers for windows of this program, files for other programs.
//!
//! The files are fetched once another program asks for them.
class DraggedDocuments : public QMimeData
{
    Q_OBJECT

public:
    using Fetch = std::function<QStringList()>;

    //! \param fetch brings the local paths, or nothing if it fails
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
