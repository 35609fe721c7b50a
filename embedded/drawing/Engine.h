// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/cad/DravoEng.h"

#include <cstdint>
#include <functional>

namespace gis {
class CLibGis;
}

namespace embedded {

/// What the embedded CAD engine asks of the program around it. An empty entry answers false or does
/// nothing. Thread: called on the user-interface thread.
struct EngineHooks {
    std::function<void(double x, double y, double z)> centreView;
    std::function<bool(QWidget* parent, std::vector<orv::String>& pending, orv::String& name)>
        newLayerName;
    std::function<bool(QWidget* parent, short& colour)> colourChoice;
    std::function<bool(int& hatchType)> hatchChoice;
};

/// A notice that the dialogs sent through the engine.
struct EngineNotice {
    int code = 0;
    int value = 0;
};

/// The engine behind `CDravoEng`: layers are those of a library, the rest is fixed.
class Engine final {
public:
    /// The implementation of an engine of this host.
    static Engine& of(CDravoEng& engine);

    /// The library whose layers are the drawings of type 1; null: none. Must outlive the engine or
    /// be taken away.
    void setLibrary(gis::CLibGis* library) { m_library = library; }
    [[nodiscard]] gis::CLibGis* library() const { return m_library; }
    void setHooks(EngineHooks hooks) { m_hooks = std::move(hooks); }
    [[nodiscard]] const EngineHooks& hooks() const { return m_hooks; }
    /// True: angles are shown in degrees (as at start), else in radians.
    void setDegrees(bool degrees) { m_degrees = degrees; }
    [[nodiscard]] bool isDegrees() const { return m_degrees; }

    [[nodiscard]] const std::vector<EngineNotice>& notices() const { return m_notices; }
    [[nodiscard]] int stopCount() const { return m_stopCount; }
    void addNotice(EngineNotice notice) { m_notices.push_back(notice); }
    void countStop() { ++m_stopCount; }

private:
    gis::CLibGis* m_library = nullptr;
    EngineHooks m_hooks;
    bool m_degrees = true;
    std::vector<EngineNotice> m_notices;
    int m_stopCount = 0;
};

/// The line types of the embedded drawing, "Continuous" first.
const std::vector<CLineType>& lineTypes();
/// Names of the hatch patterns by index from 0.
const std::vector<orv::String>& hatchPatterns();
/// Names of the text styles, "Standard" first; a style's id is its position from 1.
const std::vector<orv::String>& textStyles();

} // namespace embedded
