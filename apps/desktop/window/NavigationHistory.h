#pragma once

#include <desktop/window/Location.h>

#include <vector>

namespace desktop {

//! \brief The places that were shown, for going back and forward.
class NavigationHistory
{
public:
    //! \a location is shown now. What was ahead is forgotten. Searches that follow one another are one step.
    void visit(const Location &location);

    bool canGoBack() const { return m_current > 0; }
    bool canGoForward() const { return m_current + 1 < m_places.size(); }

    //! \return where it is then
    Location goBack();
    Location goForward();

    void clear();

private:
    std::vector<Location> m_places;
    std::size_t m_current = 0;
};

} // namespace desktop
