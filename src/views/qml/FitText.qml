import QtQuick

// One line that shrinks to fit its width, down to minimumScale of its size, and is elided only
// when it still does not fit.
Text {
    property real size: 13
    property real minimumScale: 0.75
    textFormat: Text.PlainText
    maximumLineCount: 1
    font.pixelSize: size
    fontSizeMode: Text.HorizontalFit
    minimumPixelSize: Math.floor(size * minimumScale)
    elide: Text.ElideRight
}
