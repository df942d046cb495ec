// What a list shows that asks for its rows when they are on the screen.
#pragma once

#include <QString>

#include <cstdint>

namespace zelk {

/// Rows stand in rows, each under a key of its own. Nothing is kept for a row by the list.
class IVirtualListViewController {
public:
    static constexpr uint32_t top = UINT32_MAX; ///< the parent of the outermost rows

    virtual ~IVirtualListViewController() = default;

    virtual uint32_t rowCount(uint32_t parent) const = 0;
    /// The same, but costs nothing: asked for every row on the screen. May be true for what turns out to have none.
    virtual bool hasRows(uint32_t parent) const { return rowCount(parent) != 0; }
    virtual uint32_t rowAt(uint32_t parent, uint32_t row) const = 0; ///< its key
    virtual uint32_t parentOf(uint32_t key) const = 0;
    virtual uint32_t rowOf(uint32_t key) const = 0;
    virtual int columnCount() const = 0;
    virtual QString title(int column) const = 0;
    virtual QString text(uint32_t key, int column) const = 0;
    /// Whether it is shown as one that counts for nothing.
    virtual bool isLeftOut(uint32_t key) const = 0;
    /// Whether it can be dragged, and dropped on.
    virtual bool isMovable(uint32_t) const { return true; }
    /// What stands in a tooltip; empty for none.
    virtual QString toolTip(uint32_t key) const = 0;
};

} // namespace zelk
