#pragma once

#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>
#include <document_service/VellDocumentConditon.h>

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

//! \brief One function for each operation of the document service.
//!
//! Internal; clients call the methods of VellDocumentData of the same names, which describe the operations. All functions block
//! the calling thread and process its events meanwhile, are stateless, and report by their results only: none throws, retries,
//! logs or shows anything.
//!
//! A function that returns nothing reads the body of the response, whatever the status. Lists are appended to, never cleared.
namespace VellDocService {

//! \name One document
//! @{
void getDoc(const QString &id, VellDocument &document);
//! @}

//! \name Queries
//! @{
void getDocuments(const VellDocumentConditon &condition, QList<VellDocument> &documents);
void getDocumentsRange(int limit, int skip, const VellDocumentConditon &condition,
                       const VellDocumentSort &sort, QList<VellDocument> &documents);
void getRecycledDocumentsRange(int limit, int skip, const VellDocumentConditon &condition,
                               const VellDocumentSort &sort, QList<VellDocument> &documents);
void getDocumentsRangeCount(const VellDocumentConditon &condition, const VellDocumentSort &sort,
                            int &count);
void getDocumentsRecycledRangeCount(const VellDocumentConditon &condition,
                                    const VellDocumentSort &sort, int &count);
bool getFavorDocs(QList<VellDocument> &documents, VellDocumentConditon &condition,
                  const VellDocumentSort &sort);
bool getEntityDocByGuid(const QString &entityGuid, QList<VellDocumentLite> &documents);
//! @}

//! \name Query builders
//! @{

//! The text after "where=": the compact JSON of all conditions, then the other parameters.
QString conditionToQuery(const VellDocumentConditon &condition);
//! The time span and the name pattern, if they are set.
QJsonObject conditionToWhere(const VellDocumentConditon &condition);
QJsonObject timeSpanToJson(const VellDocumentConditon &condition);
QJsonObject searchNameToJson(const VellDocumentConditon &condition);
//! {"$in": [...]}, with null for an empty string.
QJsonObject stringListToIn(const QStringList &list);
//! @}

//! \name Permission checks
//! True only if "value" in the response is the string "true".
//! @{
bool canDeleteDocFolder(const QString &rId, const QString &category);
bool canDeleteSelf(const QString &category);
bool canDownloadDocFolder(const QString &rId, const QString &category);
bool canEditDocFolder(const QString &rId, const QString &category);
bool canEditSelf(const QString &category);
bool canUploadDocFolder(const QString &rId, const QString &category);
//! @}

//! \name Changes
//! @{
bool createDocFolder(VellDocument &doc);
bool changeDocOrder(const QMap<QString, int> &orders);
bool moveToFolder(const QStringList &ids, const QString &folderId);
void deleteDoc(const QString &id, bool &ok);
bool emptyRecycled(const QString &category);
//! \return "hasSameDoc" of the response; normally false if the request fails.
bool uploadRecycleDoc(const QString &id);
bool updateDoc(VellDocument &doc);
//! @}

//! \name Marks, shares, history, password
//! @{

//! \a ids and \a out belong to the public method; they are not used.
bool restoreFile(const QString &id, const QStringList &ids, int type, bool value, QString &out);
void setFrequentDocument(const QString &id, bool value, bool &ok);
bool setRectentDocument(const QString &id, bool value);
bool getFavorDoc(int &type, const QString &id);
bool shareDocument(const QStringList &ids, const QDateTime &expiredAt, QString &code,
                   bool allowDownload);
bool getDocHistory(const QString &id, QList<VellDocument> &versions);
bool updateDocRemake(bool history, const QString &id, const QString &remark);
void getDocPwd(const QString &id, QString &pwd);
//! @}

} // namespace VellDocService
