#pragma once

class PopoverController;
class QQuickView;

// The popover's QML in a view of the caller's, bound to a controller: the app's popup window,
// the render tool, the benchmark and the view tests all load it this one way.
class PopoverScene {
public:
    // Whether the QML loaded.
    static bool load(QQuickView &view, PopoverController &controller);
};
