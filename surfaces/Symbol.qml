import QtQuick

// A bundled symbol, looked up by its symbol name ("timer", "doc.on.doc"...).
Image {
    id: symbol
    property string name
    property real size: 12

    source: name.length > 0 ? "qrc:/qt/qml/Ledgewise/Surfaces/icons/" + name + ".svg" : ""
    sourceSize: Qt.size(size * 2, size * 2)
    width: size
    height: size
    fillMode: Image.PreserveAspectFit
    smooth: true
    Accessible.ignored: true
}
