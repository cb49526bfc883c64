pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A text label in the platform's fixed font, whose digits do not jitter. Where it is given less
/// width than it needs, it shrinks.
TextLabel {
    font.family: Theme.monospacedFamily
    fontSizeMode: Text.HorizontalFit
    minimumPixelSize: 1
    verticalAlignment: Text.AlignVCenter
}
