// What the window would be to the element operations, less the grid: the
// benchmarks of the operations and of their history share it.
#pragma once

#include <string>

#include "model/store.h"
#include "workbench/element_ops.h"

namespace korvex::samples {

struct BenchHost : workbench::OpsHost {
    model::Store* s = nullptr;
    bool loading() const override { return false; }
    void show_class(int cls) override { s->curclass = cls; }
    void tables_changed(int32_t) override { s->dirty = true; }
    void log_line(int, const std::string&) override {}
};

// Every new element's form answered OK as it stands.
struct AcceptForms : workbench::ElementDialogs {
    bool poisizes(workbench::NewElementForm&) override { return true; }
    bool new_line(workbench::NewElementForm&) override { return true; }
};

}  // namespace korvex::samples
