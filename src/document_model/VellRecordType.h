#pragma once

//! \brief The types of marks that a user can set on documents.
//!
//! For VellDocumentData::restoreFile() and VellDocumentConditon::recordType. Clients may use other numbers for marks of their
//! own.
//!
//! \since 0.1
namespace VellRecordType {

constexpr int Frequent = 1; //!< see VellDocumentData::setFrequentDocument()
constexpr int Recent = 2; //!< see VellDocumentData::setRectentDocument()
constexpr int Favorite = 3; //!< see VellDocumentData::getFavorDoc()

} // namespace VellRecordType
