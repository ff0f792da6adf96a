// SPDX-License-Identifier: MIT
import QtQuick
import Varda

Window {
    visible: true

    VardaComputer {
        Component.onCompleted: readOwner().finished.connect(job => {
            console.info(job.error === VardaJob.NoError ? job.value : job.errorText);
            Qt.quit();
        })
    }
}
