pragma Singleton
import QtQuick

// Semantic fonts and colours, taken from the desktop's palette so light and dark both read well.
QtObject {
    readonly property SystemPalette palette: SystemPalette { colorGroup: SystemPalette.Active }
    readonly property color background: palette.window
    readonly property color text: palette.windowText
    readonly property color secondary: Qt.rgba(text.r, text.g, text.b, 0.55)
    readonly property color divider: Qt.rgba(text.r, text.g, text.b, 0.15)
    readonly property color edge: Qt.rgba(text.r, text.g, text.b, 0.35)
    readonly property color placeholder: Qt.rgba(text.r, text.g, text.b, 0.11)
    readonly property color header: Qt.rgba(background.r, background.g, background.b, 0.94)
    readonly property color red: "#d64541"
    readonly property color yellow: "#e5a50a"
    readonly property string mono: "monospace"
    // The default fonts carry their own monochrome signs for some emoji (a grey outline for ⚠️),
    // so emoji are drawn with the colour emoji font by name.
    readonly property string emoji: "Noto Color Emoji"

    // Rich text that shows the given plain text literally, its leading warning sign in colour.
    function warningText(text) {
        const sign = "\u26A0\uFE0F"
        const escape = t => t.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;")
            .replace(/  /g, " &nbsp;").replace(/\n/g, "<br>")
        if (!text.startsWith(sign))
            return escape(text)
        return "<span style=\"font-family:'" + emoji + "'\">" + sign + "</span>"
            + escape(text.substring(sign.length))
    }
}
