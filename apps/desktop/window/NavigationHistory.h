#pragma once

#include <desktop/window/Location.h>

#include <vector>

namespace desktop {

//! \brief The history of places, for going back and forward.
class NavigationHistory
{
public:
    //! Adds \a location after the present one, and removes later ones. Consecutive searches are one step.
    void visit(const Location &location);

    bool canGoBack() const { return m_current > 0; }
    bool canGoForward() const { return m_current + 1 < m_places.size(); }

    //! \return the new present location
    Location goBack();
    Location goForward();

    void clear();

private:
    std::vector<Location> m_places;
    std::size_t m_current = 0;
};

} // namespace desktop
