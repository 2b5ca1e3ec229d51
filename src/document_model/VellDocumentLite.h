#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <QString>

//! \brief A document reduced to six fields, for programs that keep very many of them.
//!
//! \since 0.1
//! \sa VellPubDoc::docLite2Document(), VellPubDoc::document2DocLite()
struct VellDocumentLite
{
    VellDocumentLite() = default;

    //! Reads the fields from \a object, a document in the JSON form of the service. A missing key gives an empty field or 0.
    //!
    //! The size is read as a 32-bit integer: a value that is not an integer in that range gives 0.
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
    QString createdAt; //!< in the form of VellPub::getQStringByDateTime()
    QString createdBy; //!< who created it
};

Q_DECLARE_TYPEINFO(VellDocumentLite, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VellDocumentLite)
