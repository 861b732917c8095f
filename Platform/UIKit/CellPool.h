#pragma once

#include "Platform/UIKit/ReusableCell.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// The cells of a list that are not in sight, and which of them the next row gets: the very one that showed it before a reload,
// one that waits, or a new one.
class CellPool {
public:
    using Factory = std::function<std::shared_ptr<ReusableCell>()>;

    void registerFactory(const std::string& identifier, Factory factory) { factories[identifier] = std::move(factory); }
    // Null, after a console line, for an identifier that nothing is registered under.
    std::shared_ptr<ReusableCell> dequeue(const std::string& identifier);
    // Out of sight, until a row wants it.
    void recycle(const std::shared_ptr<ReusableCell>& cell);

    // A reload begins: the cell showed that content of that row.
    void keep(const std::string& identity, const std::string& content, const std::shared_ptr<ReusableCell>& cell);
    // The cell that showed the row and still does, or what `fill` dequeues, which is offered that cell first.
    std::shared_ptr<ReusableCell> cellFor(const std::string& identity, const std::string& content, const Factory& fill);
    void recycleKept(); // the reload has ended

private:
    struct Kept {
        std::string content;
        std::shared_ptr<ReusableCell> cell;
    };

    std::map<std::string, Factory> factories;
    std::map<std::string, std::vector<std::shared_ptr<ReusableCell>>> waiting; // hidden, by reuse identifier
    std::multimap<std::string, Kept> kept; // by identity
    std::shared_ptr<ReusableCell> preferred; // what the row that is being asked for was shown in
};

} // namespace platform
