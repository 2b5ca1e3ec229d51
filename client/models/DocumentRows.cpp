#include <models/DocumentRows.h>

#include <algorithm>

void DocumentRows::setCount(int count)
{
    for (int row = count; row < this->count(); ++row) {
        if (at(row))
            m_rowOf.remove(at(row)->_id);
    }
    m_rows.resize(std::size_t(count));
}

bool DocumentRows::place(int first, const QList<VellDocument> &documents)
{
    bool isConsistent = true;
    int row = first;
    for (const VellDocument &document : documents) {
        const int before = rowOf(document._id);
        if (before >= 0 && before != row) {
            m_rows[std::size_t(before)].reset();
            isConsistent = false;
        }
        auto &slot = m_rows[std::size_t(row)];
        if (slot && slot->_id != document._id) {
            m_rowOf.remove(slot->_id);
            isConsistent = false;
        }
        slot = std::make_shared<const VellDocument>(document);
        m_rowOf.insert(document._id, row);
        ++row;
    }
    return isConsistent;
}

void DocumentRows::share(int target, const DocumentRows &other, int row)
{
    m_rows[std::size_t(target)] = other.m_rows[std::size_t(row)];
    m_rowOf.insert(other.at(row)->_id, target);
}

void DocumentRows::remove(int first, int count)
{
    for (int row = first; row < first + count; ++row) {
        if (at(row))
            m_rowOf.remove(at(row)->_id);
    }
    m_rows.erase(m_rows.begin() + first, m_rows.begin() + first + count);
    note(first);
}

void DocumentRows::forgetOutside(int first, int last)
{
    for (int row = 0; row < count(); ++row) {
        if ((row >= first && row <= last) || !at(row))
            continue;
        m_rowOf.remove(at(row)->_id);
        m_rows[std::size_t(row)].reset();
    }
}

bool DocumentRows::hasGap(int first, int last) const
{
    return std::any_of(m_rows.begin() + first, m_rows.begin() + last + 1,
                       [](const auto &row) { return !row; });
}

void DocumentRows::note(int from)
{
    for (int row = from; row < count(); ++row) {
        if (at(row))
            m_rowOf[at(row)->_id] = row;
    }
}
