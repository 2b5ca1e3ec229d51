#pragma once

#include <service/http/HttpMessages.h>

namespace service {

//! \brief Makes the response for a list, entry by entry, so that it is in memory once, as text.
//!
//! A folder with tens of thousands of entries fits. So that many clients cannot fill the memory, only a few lists above
//! LongBytes are made at the same time.
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

    //! \throws HttpError 400 when the list becomes longer than a response may be: nothing is left out silently;
    //! 503 when too many long lists are being made
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
