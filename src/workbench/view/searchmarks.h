// What a search has found, marked in the view: all of it, and one place that is looked at.
#pragma once

#include "workbench/search/searchtarget.h"
#include "workbench/view/featureoutline.h"
#include "workbench/view/stepsource.h"

class SearchMarks : public BoardView::Overlay
{
public:
    static constexpr std::size_t mostMarks = 2000; // more are counted, not drawn

    // Null for nothing.
    void set(const std::shared_ptr<const SearchTarget> &target,
             const std::shared_ptr<const StepContents> &contents);
    bool clear();
    const SearchTarget *target() const { return m_target.get(); }

    // Looks for what is to be marked in the layers that are seen. True when marks have come.
    bool setLayers(const std::vector<std::shared_ptr<const drawing::LayerScene>> &layers);
    // A layer that would show some of it, in lower case, while none that is seen does; else empty.
    QString neededLayer() const;

    std::size_t count() const { return m_marks.size(); }
    bool hasMore() const { return m_hasMore; }
    // The place that is looked at; none at first.
    int current() const { return m_current; }
    void step(int direction);
    // Holds that place, or all of them.
    cam::Box box() const;

    void paint(QPainter &painter, const BoardView &view) override;

private:
    // What one record draws, or one component.
    struct Mark
    {
        std::shared_ptr<const drawing::LayerScene> scene; // null for a component
        std::uint32_t step = 0, first = 0, last = 0;      // features
        cam::Transform place;
        std::shared_ptr<const cam::ContourPool> outline; // of a component
        cam::Box box;
    };

    void addFeatures(const std::shared_ptr<const drawing::LayerScene> &scene);
    void addParts(const cam::Transform &toView);
    bool add(Mark mark);

    std::shared_ptr<const SearchTarget> m_target;
    std::shared_ptr<const StepContents> m_contents;
    std::vector<Mark> m_marks;
    bool m_hasMore = false;
    bool m_hasLayer = false; // one is seen that may have some
    int m_current = -1;
};
