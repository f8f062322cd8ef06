#pragma once

// Settings every program that shows the popover makes before creating its window.
class PopoverStyle {
public:
    // Qt Quick's software renderer (a 380 x 500 popover needs no GPU, and it halves resident
    // memory) unless the user chose a backend.
    static void apply();
};
