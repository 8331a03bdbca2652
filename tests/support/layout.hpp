// How the rows of a test image are laid out.
#pragma once

namespace tpxtest {

// Tight (step = row bytes), padded, negative (row 0 is the last row in
// memory and the step is negative), or zero (every row is the same memory).
enum class StepKind { Tight, Padded, Negative, Zero };

inline const char* stepName(StepKind k) {
    switch (k) {
        case StepKind::Tight: return "tight";
        case StepKind::Padded: return "padded";
        case StepKind::Negative: return "negative";
        case StepKind::Zero: return "zero";
    }
    return "?";
}

}  // namespace tpxtest
