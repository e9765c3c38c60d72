// Loops over coordinates that end at the limits of int as well.
#pragma once

// Visits the coordinates from `first` to `last`, both included, one by one in a direction of 1
// or -1.
template <typename Visit>
void walk(int first, int last, int direction, Visit visit) {
    for (int at = first;; at += direction) {
        visit(at);
        if (at == last)
            return;
    }
}
