#pragma once

//! \brief The types of the records by which a user finds documents again: the marks on them.
//!
//! For VellDocumentData::restoreFile() and VellDocumentConditon::recordType. A client may use other numbers for marks of
//! its own.
namespace VellRecordType {

constexpr int Frequent = 1; //!< see VellDocumentData::setFrequentDocument()
constexpr int Recent = 2; //!< see VellDocumentData::setRectentDocument()
constexpr int Favorite = 3; //!< see VellDocumentData::getFavorDoc()

} // namespace VellRecordType
