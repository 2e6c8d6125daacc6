// Finding clusters of pixels by colour; the same on every platform.

#include "win32_control.h"

#include <algorithm>
#include <cstdlib>

namespace {

/// A run of matching pixels in one row. Runs are joined to clusters with a union-find structure.
struct Run {
    int row;
    int left;
    int right;
    std::size_t group;
};

std::size_t rootOf(std::vector<std::size_t>& groups, std::size_t group) {
    while (groups[group] != group) {
        group = groups[group] = groups[groups[group]];
    }
    return group;
}

bool matches(DWORD pixel, DWORD color, int tolerance) {
    for (const int shift : {0, 8, 16}) {
        const int difference =
            static_cast<int>(pixel >> shift & 0xFFU) - static_cast<int>(color >> shift & 0xFFU);
        if (std::abs(difference) > tolerance) {
            return false;
        }
    }
    return true;
}

std::vector<Run> matchingRuns(const Win32Picture& picture, DWORD color, int tolerance) {
    std::vector<Run> runs;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (!matches(picture.at(x, y), color, tolerance)) {
                continue;
            }
            const int left = x;
            while (x + 1 < picture.width && matches(picture.at(x + 1, y), color, tolerance)) {
                ++x;
            }
            runs.push_back({y, left, x, runs.size()});
        }
    }
    return runs;
}

}  // namespace

std::vector<RECT> win32FindClusters(const Win32Picture& picture, DWORD color, int tolerance,
                                    int minimumPixels, int joinDistance) {
    const std::vector<Run> runs = matchingRuns(picture, color, tolerance);
    std::vector<std::size_t> groups(runs.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i] = i;
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        for (std::size_t j = i; j-- > 0 && runs[i].row - runs[j].row <= joinDistance;) {
            if (runs[j].left <= runs[i].right + joinDistance &&
                runs[i].left <= runs[j].right + joinDistance) {
                groups[rootOf(groups, i)] = rootOf(groups, j);
            }
        }
    }
    std::vector<RECT> extents(runs.size());
    std::vector<int> counts(runs.size(), 0);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const std::size_t group = rootOf(groups, i);
        const RECT part = {runs[i].left, runs[i].row, runs[i].right + 1, runs[i].row + 1};
        UnionRect(&extents[group], &extents[group], &part);
        counts[group] += runs[i].right - runs[i].left + 1;
    }
    std::vector<RECT> clusters;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (counts[i] >= minimumPixels && groups[i] == i) {
            clusters.push_back(extents[i]);
        }
    }
    std::sort(clusters.begin(), clusters.end(), [](const RECT& left, const RECT& right) {
        return left.top != right.top ? left.top < right.top : left.left < right.left;
    });
    return clusters;
}
