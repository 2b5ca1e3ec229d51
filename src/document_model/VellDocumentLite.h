#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <QString>

//! \brief A document reduced to six fields, for callers that keep very many.
//!
//! VellPubDoc::docLite2Document() and VellPubDoc::document2DocLite() convert from and to VellDocument.
struct VellDocumentLite
{
    VellDocumentLite() = default;

    //! Reads the fields from one JSON object of the service. A missing key leaves the field empty or 0.
    //!
    //! The size is read as a 32-bit integer: one that is not a whole number in that range reads
    //! as 0.
    explicit VellDocumentLite(const QJsonObject &object)
        : _id(object.value(QLatin1String("_id")).toString()),
          name(object.value(QLatin1String("name")).toString()),
          fileSize(object.value(QLatin1String("fileSize")).toInt()),
          suffix(object.value(QLatin1String("suffix")).toString()),
          createdAt(object.value(QLatin1String("createdAt")).toString()),
          createdBy(object.value(QLatin1String("createdBy")).toString())
    {}

    QString _id; //!< as VellDocument::_id
    QString name; //!< as VellDocument::name
    qint64 fileSize = 0; //!< bytes
    QString suffix; //!< without the dot
    QString
        createdAt; //!< the service's text of the time, as VellPub::getQStringByDateTime() writes it
    QString createdBy; //!< who created it
};

Q_DECLARE_TYPEINFO(VellDocumentLite, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VellDocumentLite)
