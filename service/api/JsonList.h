#pragma once

#include <service/http/HttpMessages.h>

namespace service {

//! \brief Creates the response with a list, entry by entry, so that it is in memory only once, as text.
//!
//! Large enough for a folder with tens of thousands of entries. Only a few lists above LongBytes are created at the same time, so that
//! many clients cannot fill the memory.
class JsonList
{
public:
    static constexpr int MaxEntries = 100'000;
    static constexpr int MaxBytes = 96 * 1024 * 1024;
    static constexpr int LongBytes = 16 * 1024 * 1024;
    static constexpr int MaxLongLists = 4;

    JsonList() = default;
    ~JsonList();
    Q_DISABLE_COPY(JsonList)

    //! \throws HttpError 400 if the list becomes longer than a response may be, instead of omitting entries; 503 if too many long lists
    //! are being created
    void append(const QJsonObject &entry);

    //! To be called once, at the end.
    HttpResponse response();

private:
    void claimPlace();

    QByteArray m_text = QByteArrayLiteral("[");
    int m_count = 0;
    bool m_isLong = false;
};

} // namespace service
