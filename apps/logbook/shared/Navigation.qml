// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick

/** Where the user is. */
QtObject {
    enum Page { Dives, Computer, Settings }

    /** One of Page */
    property int page: 0
}
