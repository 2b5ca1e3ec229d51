#pragma once

#include <QByteArray>

//! What the records of a list look like.
enum class RecordShape {
    Short, //!< what every document has, a file's data included
    Full, //!< every field that the service sends, with links and five rights
};

//! The JSON text of a list of \a count documents of one folder, as the service sends it.
QByteArray documentList(int count, RecordShape shape);
