#pragma once

/// Results of ObjectARX calls. Only the codes that this slice returns are declared.
struct Acad {
    enum ErrorStatus {
        eOk = 0,
        eNotImplementedYet = 1,
        eNotApplicable = 2,
        eInvalidInput = 3,
        eDuplicateKey = 6,
        eOutOfMemory = 12,
        eNullPtr = 21,
        eKeyNotFound = 23,
        eNoDocument = 90
    };
};
