pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A text label in the platform's fixed font, whose digits do not jitter.
TextLabel {
    font.family: Theme.monospacedFamily
}
