#include <service/api/JsonCheck.h>

#include <QSet>
#include <QString>

#include <algorithm>
#include <cstring>
#include <vector>

namespace service {

namespace {

constexpr size_t MaxDepth = 100;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

//! One pass over the text, without recursion, so that deep nesting needs no stack.
class JsonCheck
{
public:
    explicit JsonCheck(const QByteArray &text)
        : m_at(text.constData()), m_end(text.constData() + text.size())
    {}

    const char *run();

private:
    struct Level
    {
        bool isObject = false;
        QSet<QString> keys;
    };

    void skipSpace();
    bool take(char c);
    bool takeWord(const char *word);
    bool takeDigits();
    bool takeNumber();
    bool takeText(QString *text);
    bool takeEscape(QString *text);
    bool takeScalar();
    //! Reads a value, or the start of an array or object.
    bool beginValue();
    bool takeKey();
    //! Closes the arrays and objects that end here; false on an error. Another value must follow unless all levels are closed.
    bool endValue();
    bool refuse(const char *fault);

    const char *m_at;
    const char *const m_end;
    std::vector<Level> m_levels;
    const char *m_fault = nullptr;
    bool m_isValueOpen = false; //!< an array or object has just begun
};

const char *JsonCheck::run()
{
    do {
        if (!beginValue() || (!m_isValueOpen && !endValue()))
            return m_fault;
    } while (!m_levels.empty());
    skipSpace();
    return m_at == m_end ? nullptr : "there is something after it";
}

bool JsonCheck::refuse(const char *fault)
{
    if (m_fault == nullptr)
        m_fault = fault;
    return false;
}

void JsonCheck::skipSpace()
{
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\t' || *m_at == '\r'))
        ++m_at;
}

bool JsonCheck::take(char c)
{
    if (m_at == m_end || *m_at != c)
        return false;
    ++m_at;
    return true;
}

bool JsonCheck::takeWord(const char *word)
{
    const size_t length = std::strlen(word);
    if (static_cast<size_t>(m_end - m_at) < length || std::memcmp(m_at, word, length) != 0)
        return false;
    m_at += length;
    return true;
}

bool JsonCheck::takeDigits()
{
    const char *const start = m_at;
    while (m_at != m_end && isDigit(*m_at))
        ++m_at;
    return m_at != start;
}

bool JsonCheck::takeNumber()
{
    take('-');
    if (!take('0') && !takeDigits())
        return false;
    if (take('.') && !takeDigits())
        return false;
    if (take('e') || take('E')) {
        if (!take('+'))
            take('-');
        return takeDigits();
    }
    return true;
}

bool JsonCheck::takeEscape(QString *text)
{
    static const char names[] = "\"\\/bfnrt";
    static const char values[] = "\"\\/\b\f\n\r\t";
    if (m_at == m_end)
        return false;
    const char c = *m_at++;
    if (c == 'u') {
        constexpr int Length = 4;
        // Not what toUShort() also takes: spaces, a sign, "0x".
        if (m_end - m_at < Length || !std::all_of(m_at, m_at + Length, isHexDigit))
            return false;
        text->append(QChar(QByteArray(m_at, Length).toUShort(nullptr, 16)));
        m_at += Length;
        return true;
    }
    const char *const place = c == '\0' ? nullptr : std::strchr(names, c);
    if (place != nullptr)
        text->append(QLatin1Char(values[place - names]));
    return place != nullptr;
}

bool JsonCheck::takeText(QString *text)
{
    if (!take('"'))
        return false;
    for (;;) {
        const char *const start = m_at;
        while (m_at != m_end && *m_at != '"' && *m_at != '\\' && static_cast<uchar>(*m_at) >= 0x20)
            ++m_at;
        text->append(QString::fromUtf8(start, static_cast<int>(m_at - start)));
        if (take('"'))
            return true;
        if (!take('\\') || !takeEscape(text))
            return false;
    }
}

bool JsonCheck::takeScalar()
{
    if (m_at != m_end && *m_at == '"') {
        QString ignored;
        return takeText(&ignored); // a wrong text must not go on as a number
    }
    return takeWord("true") || takeWord("false") || takeWord("null") || takeNumber();
}

bool JsonCheck::beginValue()
{
    if (!m_levels.empty() && m_levels.back().isObject && !takeKey())
        return false;
    skipSpace();
    const bool isObject = take('{');
    m_isValueOpen = isObject || take('[');
    if (!m_isValueOpen)
        return takeScalar() || refuse("a value is missing or wrong");
    if (m_levels.size() == MaxDepth)
        return refuse("it is nested too deep");
    m_levels.push_back({isObject, {}});
    skipSpace();
    if (take(isObject ? '}' : ']')) {
        m_levels.pop_back();
        m_isValueOpen = false;
    }
    return true;
}

bool JsonCheck::takeKey()
{
    skipSpace();
    QString key;
    if (!takeText(&key))
        return refuse("a key is missing or wrong");
    QSet<QString> &keys = m_levels.back().keys;
    if (keys.contains(key))
        return refuse("a key occurs twice in an object");
    keys.insert(key);
    skipSpace();
    return take(':') || refuse("a colon is missing");
}

bool JsonCheck::endValue()
{
    while (!m_levels.empty()) {
        skipSpace();
        if (take(','))
            return true;
        if (!take(m_levels.back().isObject ? '}' : ']'))
            return refuse("a comma or the end of an array or object is missing");
        m_levels.pop_back();
    }
    return true;
}

} // namespace

const char *findJsonFault(const QByteArray &text)
{
    return JsonCheck(text).run();
}

} // namespace service
