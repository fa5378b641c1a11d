// Walks the edges of a contour together with the points where they start.
#pragma once

#include <cstddef>

namespace cam {

// An edge and its start, which is the end of the edge before it.
template <typename AnyPoint, typename AnyEdge>
struct StartedEdge
{
    AnyPoint from;
    const AnyEdge &edge;
};

template <typename AnyPoint, typename AnyEdge>
class EdgeWalk
{
public:
    EdgeWalk(AnyPoint start, const AnyEdge *edges, std::size_t count)
        : m_start(start), m_begin(edges), m_end(edges + count)
    {
    }

    class Iterator
    {
    public:
        Iterator(AnyPoint from, const AnyEdge *edge) : m_from(from), m_edge(edge) {}
        StartedEdge<AnyPoint, AnyEdge> operator*() const { return {m_from, *m_edge}; }
        Iterator &operator++()
        {
            m_from = m_edge->end;
            ++m_edge;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return m_edge != other.m_edge; }

    private:
        AnyPoint m_from;
        const AnyEdge *m_edge;
    };

    Iterator begin() const { return {m_start, m_begin}; }
    Iterator end() const { return {m_start, m_end}; }

private:
    AnyPoint m_start;
    const AnyEdge *m_begin;
    const AnyEdge *m_end;
};

} // namespace cam
