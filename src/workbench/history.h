// The project's history: every change to the project as one step that can be
// taken back (undo) and done again (redo).
//
// A step holds what the change did to the columns, not a copy of the
// project: the rows it changed, added or removed (as hunks of before and
// after rows), and the small non-row state (counters, draw-order list,
// header fields, code page) when that changed. Memory grows with the size of
// the changes.
//
// An operation opens a step with a name and a scope, runs, and the step
// closes (the Recorder going out of scope, or record() returning). Opening
// snapshots only what the scope names; closing compares and keeps what
// differs. A step that changed nothing is dropped.
//
//   history.record("Delete 3 Points", Scope::rows_of(cls, rows), [&] { ... });
//
// Rows inserted, erased and moved by the row operations (row_ops.h,
// sort_rows.h) are followed in every table whatever the scope; rows changed
// where they stand must be in the scope.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// What a step may change.
struct Scope {
    enum class Kind {
        state,    // header fields, draw-order list, counters only
        rows,     // these rows of a class where they stand, plus any rows inserted, erased or moved
        table,    // any row of a class's table (polygons; lines with active lines; points with extra points)
        project,  // anything at all
    };
    Kind kind = Kind::state;
    int cls = -1;               // the class (rows, table)
    std::vector<int32_t> rows;  // store rows (rows)

    static Scope state_only() { return {}; }
    static Scope rows_of(int cls, std::vector<int32_t> rows) { return {Kind::rows, cls, std::move(rows)}; }
    static Scope row_of(int cls, int32_t row) { return {Kind::rows, cls, {row}}; }
    static Scope whole_class(int cls) { return {Kind::table, cls, {}}; }
    static Scope whole_project() { return {Kind::project, -1, {}}; }
    // The draw-order list and every polygon's levels (pg_drw).
    static Scope draw_order() { return {Kind::rows, model::k_polygons, {}}; }
};

// What the window follows after an undo, redo or jump.
struct Follow {
    bool done = false;           // false: nothing to undo/redo, nothing changed
    std::string name;            // the step's name
    int cls = -1;                // the class to show (-1: keep the one in view)
    std::vector<int32_t> rows;   // store rows concerned, as they are now (select them)
    bool tables_changed = false; // element rows changed: rebuild the grid
    bool header_changed = false; // FID, PID, code page or header length changed: refill the top fields
};

class History {
public:
    static constexpr size_t k_default_limit = 200;

    explicit History(model::Store& s, size_t limit = k_default_limit);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    // An open step; closes when destroyed. Steps opened while one is open
    // join it (their scope's rows are added to it): one user action, one step.
    class Recorder {
    public:
        Recorder(Recorder&& other) noexcept;
        Recorder& operator=(Recorder&&) = delete;
        ~Recorder();
        // The name when the outcome decides it ("Paste 2 Lines"). A step
        // opened inside another renames only when it gave the name.
        void rename(std::string name);
        // Closes now; the step is kept when it changed something.
        void close();

    private:
        friend class History;
        Recorder(History* h, bool outer, bool names) : h_(h), outer_(outer), names_(names) {}
        History* h_;
        bool outer_;
        bool names_;
    };

    // join: a step opened with the join key of the step just done, while
    // nothing came between and the project is not at its saved state, goes
    // into that step (typing on in one field). An empty name takes the name
    // of the first step opened inside.
    Recorder open(std::string name, Scope scope, std::string join = {});

    // Runs fn as one step and returns what fn returns.
    template <class F>
    decltype(auto) record(std::string name, Scope scope, F&& fn, std::string join = {}) {
        Recorder step = open(std::move(name), std::move(scope), std::move(join));
        return fn();
    }

    bool recording() const;

    bool can_undo() const { return position_ > 0; }
    bool can_redo() const { return position_ < steps_.size(); }
    // The names for the menu ("" when there is none): "Undo " + undo_name().
    std::string undo_name() const;
    std::string redo_name() const;
    // Every step's name, oldest first; position() of them are done.
    std::vector<std::string> names() const;
    size_t position() const { return position_; }
    size_t size() const { return steps_.size(); }

    Follow undo();
    Follow redo();
    // Undoes or redoes until position() is p (0 .. size()); the History
    // list's jump. Follows the last step taken.
    Follow jump(size_t p);

    // Loading a file or New: nothing to undo, the project as it is is saved.
    void clear();
    // A save: the project as it is now is the saved state.
    void mark_saved();
    // The project is as it was saved (the dirty flag follows this).
    bool at_saved() const { return saved_ == static_cast<std::ptrdiff_t>(position_); }

    // The most steps kept; the oldest go first. At least 1.
    void set_limit(size_t n);
    size_t limit() const { return limit_; }

    // Bytes the steps hold (their rows, strings and bookkeeping).
    size_t bytes() const;

    struct Step;
    struct Open;

private:
    void close_step();
    void begin_part();
    void end_part();
    void push(std::unique_ptr<Step> step);
    Follow apply(bool forward);

    model::Store& s_;
    size_t limit_;
    std::vector<std::unique_ptr<Step>> steps_;
    size_t position_ = 0;
    // Steps done at the saved state; -1 when that state can no longer be reached.
    std::ptrdiff_t saved_ = 0;
    std::unique_ptr<Open> open_;
    int depth_ = 0;
};

// A step when history is given, else none: for flows whose history is optional.
std::optional<History::Recorder> open_step(History* history, std::string name, Scope scope);

}  // namespace korvex::workbench
