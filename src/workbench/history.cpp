#include "workbench/history.h"

#include <algorithm>
#include <array>

#include "model/row_watch.h"
#include "workbench/row_journal.h"
#include "workbench/row_ops.h"
#include "workbench/step_diff.h"
#include "workbench/step_part.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

struct History::Step {
    std::string name;
    std::string join;
    int cls = -1;
    std::vector<StepPart> parts;
    size_t bytes() const {
        size_t n = sizeof(*this) + name.capacity() + join.capacity();
        for (const StepPart& p : parts) n += p.bytes();
        return n;
    }
};

struct History::Open {
    std::string name;
    std::string join;
    bool join_last = false;
    int cls = -1;
    StepCover cover;
    std::vector<int32_t> rows;  // rows of cls to copy when a part begins
    std::vector<StepPart> parts;
    // The snapshot of the current part.
    std::unique_ptr<RowJournal> journal;
    std::array<std::unique_ptr<RowBuffer>, k_row_tables> whole;
    std::unique_ptr<std::vector<std::string>> levels;
    SmallState small;
    std::string drwlist, no_level_types;
    std::unique_ptr<WideState> wide;
};

History::History(model::Store& s, size_t limit) : s_(s), limit_(std::max<size_t>(1, limit)) {}

History::~History() {
    if (open_ && s_.row_watch == open_->journal.get()) s_.row_watch = nullptr;
}

History::Recorder::Recorder(Recorder&& other) noexcept : h_(other.h_), outer_(other.outer_), names_(other.names_) {
    other.h_ = nullptr;
}

History::Recorder::~Recorder() { close(); }

void History::Recorder::rename(std::string name) {
    if (h_ && h_->open_ && names_) h_->open_->name = std::move(name);
}

void History::Recorder::close() {
    if (!h_) return;
    History* h = h_;
    h_ = nullptr;
    if (outer_)
        h->close_step();
    else if (h->depth_ > 1)
        --h->depth_;
}

namespace {

bool widens(const StepCover& now, const Scope& scope) {
    if (scope.kind == Scope::Kind::project) return !now.project;
    if (scope.kind == Scope::Kind::table) {
        const int t = table_of(scope.cls);
        return t >= 0 && t < k_row_tables && !now.whole[static_cast<size_t>(t)] && !now.project;
    }
    return scope.kind == Scope::Kind::rows && table_of(scope.cls) == model::k_polygons && !now.levels;
}

void add_to(StepCover& c, const Scope& scope) {
    if (scope.kind == Scope::Kind::project) {
        c.project = true;
        c.whole.fill(true);
    }
    const int t = table_of(scope.cls);
    if (scope.kind == Scope::Kind::table && t >= 0 && t < k_row_tables) c.whole[static_cast<size_t>(t)] = true;
    if (t == model::k_polygons) c.levels = true;
}

}  // namespace

History::Recorder History::open(std::string name, Scope scope, std::string join) {
    if (open_) {
        ++depth_;
        const bool names = open_->name.empty();
        if (names) open_->name = std::move(name);
        if (widens(open_->cover, scope)) {
            end_part();
            add_to(open_->cover, scope);
            begin_part();
        }
        // Rows named now are copied now, before the inner change touches them.
        if (scope.kind == Scope::Kind::rows)
            for (const int32_t r : scope.rows) open_->journal->keep(table_of(scope.cls), r);
        return Recorder(this, false, names);
    }
    open_ = std::make_unique<Open>();
    depth_ = 1;
    open_->name = std::move(name);
    open_->cls = scope.cls;
    open_->join = std::move(join);
    open_->join_last = !open_->join.empty() && position_ == steps_.size() && position_ > 0 && !at_saved() &&
                       steps_.back()->join == open_->join;
    add_to(open_->cover, scope);
    open_->rows = scope.kind == Scope::Kind::rows ? std::move(scope.rows) : std::vector<int32_t>{};
    begin_part();
    return Recorder(this, true, true);
}

void History::begin_part() {
    Open& o = *open_;
    o.journal = std::make_unique<RowJournal>(s_);
    for (int t = 0; t < k_row_tables; ++t) {
        auto& w = o.whole[static_cast<size_t>(t)];
        w.reset();
        if (!o.cover.whole[static_cast<size_t>(t)]) continue;
        w = std::make_unique<RowBuffer>(t);
        const int32_t n = table_rows(s_, t);
        for (int32_t r = 0; r < n; ++r) w->append(s_, r);
    }
    o.levels.reset();
    if (o.cover.levels && !o.whole[model::k_polygons])
        o.levels = std::make_unique<std::vector<std::string>>(s_.pg_drw);
    const int table = table_of(o.cls);
    for (const int32_t r : o.rows) o.journal->keep(table, r);
    o.small = small_state(s_);
    o.drwlist = s_.drwlist;
    o.no_level_types = s_.walk.no_level_types;
    o.wide.reset();
    if (o.cover.project) o.wide = std::make_unique<WideState>(WideState{s_.blocks, s_.walk});
    s_.row_watch = o.journal.get();
}

void History::end_part() {
    Open& o = *open_;
    if (s_.row_watch == o.journal.get()) s_.row_watch = nullptr;
    StepPart p;
    for (int t = 0; t < k_row_tables; ++t) {
        TableChange c;
        if (const RowBuffer* w = o.whole[static_cast<size_t>(t)].get()) {
            c = diff_whole(s_, t, *w);
        } else {
            RowJournal::Table& followed = o.journal->table(t);
            const std::vector<std::string>* levels = t == model::k_polygons ? o.levels.get() : nullptr;
            // Untouched: nothing moved, nothing copied, no levels to compare.
            if (!followed.moved && followed.kept.empty() && !levels && followed.start_rows == table_rows(s_, t)) continue;
            c = diff_followed(s_, t, followed, levels);
        }
        if (!c.hunks.empty()) p.tables.push_back(std::move(c));
    }
    p.before = o.small;
    p.after = small_state(s_);
    p.small_changed = !(p.before == p.after);
    p.drwlist = string_edit(o.drwlist, s_.drwlist);
    p.no_level_types = string_edit(o.no_level_types, s_.walk.no_level_types);
    if (o.wide && o.wide->blocks != s_.blocks) {
        p.wide_before = std::move(o.wide);
        p.wide_after = std::make_unique<WideState>(WideState{s_.blocks, s_.walk});
    }
    o.journal.reset();
    for (auto& w : o.whole) w.reset();
    o.levels.reset();
    o.wide.reset();
    if (!p.empty()) o.parts.push_back(std::move(p));
}

void History::close_step() {
    if (!open_) return;
    end_part();
    std::unique_ptr<Open> o = std::move(open_);
    depth_ = 0;
    if (o->parts.empty()) return;
    if (o->join_last) {
        Step& last = *steps_.back();
        for (StepPart& p : o->parts) last.parts.push_back(std::move(p));
        return;
    }
    auto step = std::make_unique<Step>();
    step->name = std::move(o->name);
    step->join = std::move(o->join);
    step->cls = o->cls;
    step->parts = std::move(o->parts);
    push(std::move(step));
}

void History::push(std::unique_ptr<Step> step) {
    if (position_ < steps_.size()) {
        // The steps undone are gone; so is the saved state if it lay among them.
        if (saved_ > static_cast<std::ptrdiff_t>(position_)) saved_ = -1;
        steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(position_), steps_.end());
    }
    steps_.push_back(std::move(step));
    ++position_;
    while (steps_.size() > limit_) {
        steps_.erase(steps_.begin());
        --position_;
        if (saved_ >= 0) --saved_;
    }
}

bool History::recording() const { return open_ != nullptr; }

std::string History::undo_name() const { return can_undo() ? steps_[position_ - 1]->name : std::string(); }

std::string History::redo_name() const { return can_redo() ? steps_[position_]->name : std::string(); }

std::vector<std::string> History::names() const {
    std::vector<std::string> out;
    out.reserve(steps_.size());
    for (const auto& s : steps_) out.push_back(s->name);
    return out;
}

Follow History::apply(bool forward) {
    Follow f;
    if (open_ || (forward ? !can_redo() : !can_undo())) return f;
    if (!forward) --position_;
    const Step& step = *steps_[position_];
    if (forward) {
        for (const StepPart& p : step.parts) apply_part(s_, p, true);
        ++position_;
    } else {
        for (auto it = step.parts.rbegin(); it != step.parts.rend(); ++it) apply_part(s_, *it, false);
    }
    f.done = true;
    f.name = step.name;
    f.cls = step.cls;
    for (const StepPart& p : step.parts) {
        f.tables_changed = f.tables_changed || !p.tables.empty() || p.drwlist.changed;
        f.header_changed = f.header_changed || (p.small_changed && !p.before.same_header(p.after));
    }
    // The rows the last part taken left standing: select them.
    const StepPart& last = forward ? step.parts.back() : step.parts.front();
    const int table = table_of(step.cls);
    const int32_t first = step.cls >= 0 ? first_row(s_, step.cls) : 0;
    const int32_t end = step.cls >= 0 ? end_row(s_, step.cls) : 0;
    for (const TableChange& c : last.tables) {
        if (c.table != table) continue;
        for (const Hunk& h : c.hunks) {
            const int32_t at = forward ? h.new_at : h.old_at;
            const auto count = static_cast<int32_t>((forward ? h.after : h.before).size());
            for (int32_t r = at; r < at + count && r < end; ++r)
                if (r >= first) f.rows.push_back(r);
            // Rows that went: the one that took their place, or the last.
            const int32_t next = std::min(at, end - 1);
            if (count == 0 && next >= first && (f.rows.empty() || f.rows.back() != next)) f.rows.push_back(next);
        }
    }
    return f;
}

Follow History::undo() { return apply(false); }

Follow History::redo() { return apply(true); }

Follow History::jump(size_t p) {
    Follow f;
    p = std::min(p, steps_.size());
    while (!open_ && position_ > p) f = undo();
    while (!open_ && position_ < p) f = redo();
    return f;
}

void History::clear() {
    if (open_) {
        if (s_.row_watch == open_->journal.get()) s_.row_watch = nullptr;
        open_.reset();
        depth_ = 0;
    }
    steps_.clear();
    position_ = 0;
    saved_ = 0;
}

void History::mark_saved() { saved_ = static_cast<std::ptrdiff_t>(position_); }

void History::set_limit(size_t n) {
    limit_ = std::max<size_t>(1, n);
    while (steps_.size() > limit_) {
        // The oldest done step goes; with none done, the last undone one
        // (the steps behind it rest on it).
        if (position_ > 0) {
            steps_.erase(steps_.begin());
            --position_;
            if (saved_ >= 0) --saved_;
        } else {
            steps_.pop_back();
            if (saved_ > static_cast<std::ptrdiff_t>(steps_.size())) saved_ = -1;
        }
    }
}

size_t History::bytes() const {
    size_t n = steps_.capacity() * sizeof(std::unique_ptr<Step>);
    for (const auto& s : steps_) n += s->bytes();
    return n;
}

std::optional<History::Recorder> open_step(History* history, std::string name, Scope scope) {
    if (!history) return std::nullopt;
    return history->open(std::move(name), std::move(scope));
}

}  // namespace korvex::workbench
