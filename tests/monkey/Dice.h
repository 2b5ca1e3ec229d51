#pragma once

#include <QRandomGenerator>
#include <QString>

//! \brief What one step of the monkey decides by. A step of one number and seed decides always in the same way.
class Dice
{
public:
    Dice(quint32 seed, quint32 step);

    //! From 0 to \a end - 1; 0 if \a end is 0.
    int roll(int end) { return end > 0 ? int(m_random.bounded(quint32(end))) : 0; }
    bool chance(int percent) { return roll(100) < percent; }

    //! One of \a list, which is not empty.
    template <typename List>
    typename List::value_type pick(const List &list)
    {
        return list.at(roll(int(list.size())));
    }

    //! Of a document: one of a few, so that names meet.
    QString name();

    //! Anything that a user may type or paste.
    QString text();

    //! The bytes of a file: mostly few, sometimes more than are sent in one piece.
    int size();

private:
    QRandomGenerator m_random;
};
