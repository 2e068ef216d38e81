pragma Singleton

import QtQuick
import MirrowvaleAuthenticator.Desktop

/// The roles of colours, texts and spaces that everything is drawn with.
QtObject {
    id: root

    // Where the desktop has no preference, its palette decides.
    readonly property SystemPalette palette: SystemPalette { }
    readonly property bool dark: SystemAppearance.colorScheme > 0 ? SystemAppearance.colorScheme === 1
        : palette.windowText.hslLightness > palette.window.hslLightness
    readonly property bool strong: SystemAppearance.moreContrast
    readonly property real textScale: SystemAppearance.textScale
    readonly property bool mirrored: Application.layoutDirection === Qt.RightToLeft

    // Surfaces, from the back to the front.
    readonly property color background: dark ? "#000000" : "#ffffff"
    readonly property color groupedBackground: dark ? "#1c1c1e" : "#f2f2f7"
    readonly property color card: dark ? "#2c2c2e" : "#ffffff"
    readonly property color menu: dark ? "#3a3a3c" : "#ffffff"
    readonly property color clear: "#00000000"
    readonly property color dim: "#000000"
    readonly property real dimOpacity: dark ? 0.55 : 0.35

    // Texts and symbols.
    readonly property color primary: dark ? "#ffffff" : "#000000"
    readonly property color secondary: strong ? (dark ? "#d0d0d6" : "#404045") : dark ? "#a0a0a8" : "#65656b"
    readonly property color placeholder: strong ? secondary : dark ? "#a0a0a8" : "#6e6e74"
    readonly property color disabled: strong ? (dark ? "#b0b0b6" : "#66666c") : dark ? "#5c5c61" : "#b4b4ba"
    readonly property color tint: strong ? (dark ? "#b8d8ff" : "#003f8f") : dark ? "#6fadff" : "#0a60cc"
    readonly property color red: strong ? (dark ? "#ffb4ae" : "#9a0012") : dark ? "#ff7a70" : "#d0021b"
    readonly property color destructive: dark && !strong ? "#d21f2d" : red
    readonly property color destructiveLabel: dark && strong ? "#000000" : "#ffffff"
    readonly property color selection: dark ? "#1f4f86" : "#b9d6fb"

    // Lines and fills.
    readonly property color separator: strong ? (dark ? "#e0e0e4" : "#404045") : dark ? "#3d3d41" : "#c6c6c9"
    readonly property color fill: dark ? "#2a2a2d" : "#ededf1"
    readonly property color fillOnCard: dark ? "#414145" : "#e9e9ed"
    readonly property color fillPressed: dark ? "#3f3f44" : "#e1e1e6"
    readonly property color highlight: dark ? "#4b4b50" : "#d6d6db"

    // Text styles.
    readonly property string interfaceFamily: "Roboto"
    readonly property font largeTitle: Qt.font({ family: interfaceFamily, pixelSize: 34 * textScale, weight: Font.Bold })
    readonly property font title3: Qt.font({ family: interfaceFamily, pixelSize: 20 * textScale, weight: Font.DemiBold })
    readonly property font headline: Qt.font({ family: interfaceFamily, pixelSize: 17 * textScale, weight: Font.DemiBold })
    readonly property font body: Qt.font({ family: interfaceFamily, pixelSize: 17 * textScale })
    readonly property font subheadline: Qt.font({ family: interfaceFamily, pixelSize: 15 * textScale })
    readonly property font footnote: Qt.font({ family: interfaceFamily, pixelSize: 13 * textScale })
    readonly property font caption: Qt.font({ family: interfaceFamily, pixelSize: 12 * textScale })
    /// The least size of a text that is made smaller to fit one line, in pixels.
    readonly property int smallestText: 12

    // A bar shares one line among three texts: they grow less than others.
    readonly property real barScale: Math.min(textScale, 1.2)
    readonly property font barTitle: Qt.font({ family: interfaceFamily, pixelSize: 17 * barScale, weight: Font.DemiBold })
    readonly property font barButton: Qt.font({ family: interfaceFamily, pixelSize: 17 * barScale })
    readonly property font code: Qt.font({ family: "JetBrains Mono", pixelSize: 32 * textScale, weight: Font.DemiBold, preferShaping: false })

    readonly property FontMetrics countdownMetrics: FontMetrics {
        font: root.caption
    }

    /// The width of a countdown in its text style.
    function countdownWidth(countdown: string): real {
        const width = countdownMetrics.advanceWidth(countdown)
        return countdownMetrics.font.pixelSize > 0 ? Math.ceil(width) : 0 // asked for the font: to follow its size
    }

    readonly property TextMetrics codeMetrics: TextMetrics {
        font: root.code
        text: "00000000"
    }

    /// The code's font, made smaller where so many digits would exceed the room. Without a room, as before the first
    /// layout, it is as it is.
    function codeFitting(digits: int, room: real): font {
        // Asked here, not in a property: that would have a value before its font has one, and load another for it.
        const wanted = digits * codeMetrics.advanceWidth / codeMetrics.text.length
        return wanted <= room || room <= 0 ? code : Qt.font({
            family: code.family,
            pixelSize: Math.max(1, Math.floor(code.pixelSize * room / wanted)),
            weight: code.weight,
            preferShaping: false
        })
    }

    // Spaces and sizes in points.
    readonly property int padding: 16
    readonly property int spacing: 8
    readonly property int rowPadding: 8
    readonly property int target: 44
    readonly property int readableWidth: 640
    readonly property int sheetWidth: 560
    readonly property int sheetTop: 36
    readonly property int sheetRadius: 14
    readonly property int cornerRadius: 10
    readonly property int symbolSize: 22

    // Times in milliseconds.
    readonly property int quick: SystemAppearance.reducedMotion ? 0 : 120
    readonly property int moderate: SystemAppearance.reducedMotion ? 0 : 250
    readonly property int sheetTime: SystemAppearance.reducedMotion ? 0 : 350

    /// The margin at both sides of a page's content: wide pages keep their lines short.
    function inset(pageWidth: real): real {
        return Math.max(padding, (pageWidth - readableWidth) / 2)
    }
}
