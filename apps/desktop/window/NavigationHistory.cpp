#include <desktop/window/NavigationHistory.h>

namespace desktop {

namespace {

constexpr std::size_t MostPlaces = 200;

} // namespace

void NavigationHistory::visit(const Location &location)
{
    if (!m_places.empty()) {
        Location &current = m_places.at(m_current);
        if (current == location)
            return;
        const bool isSameSearch =
            current.kind == Location::Kind::Search && location.kind == Location::Kind::Search;
        if (isSameSearch) { // the user is typing
            current = location;
            return;
        }
        m_places.resize(m_current + 1);
    }
    m_places.push_back(location);
    if (m_places.size() > MostPlaces)
        m_places.erase(m_places.begin());
    m_current = m_places.size() - 1;
}

Location NavigationHistory::goBack()
{
    if (canGoBack())
        --m_current;
    return m_places.at(m_current);
}

Location NavigationHistory::goForward()
{
    if (canGoForward())
        ++m_current;
    return m_places.at(m_current);
}

void NavigationHistory::clear()
{
    m_places.clear();
    m_current = 0;
}

} // namespace desktop
