#pragma once

/// Result codes of ObjectARX functions. Simplified: only those that the slice returns.
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
