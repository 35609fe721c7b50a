// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/LibGen.h"
#include "host/base/String.h"

#include <cstdint>
#include <memory>
#include <vector>

class QWidget;

namespace embedded {
class Engine;
}

/// A line type of the drawing: dashes and gaps in drawing units (gaps negative), none for a
/// continuous line.
struct CLineType {
    orv::String name;
    orv::String description;
    std::vector<double> pattern;
};

/// The CAD engine as the dialogs use it. Drawing type 1 is a graphic layer ("strato"); drawing id 0
/// is none. Units: angles in radians except where the user's unit is named; colours are indexes 0
/// to 255, 7 = foreground. Errors: unknown names and ids give 0, false and empty texts. Owner,
/// thread: the host's; call on the user-interface thread.
class TEMATICA_HOST_API CDravoEng : public ORVNotifySource {
public:
    CDravoEng();
    ~CDravoEng() override;

    void Notify(int code, int value, void* data) override;

    virtual void CenterViewAt(std::int64_t drawing, double x, double y, double z);
    virtual void StopExecuteCommand();

    virtual void GetAllDrawingsNamesForType(int type, std::vector<orv::String>& names);
    virtual bool GetDrawingName(std::int64_t drawing, orv::String& name);
    virtual std::int64_t GetDrawingFromName(int type, const orv::String& name);
    /// The id of the new drawing, or of the one that has the name already.
    virtual std::int64_t AddDrawing(
        int type, const orv::String& name, bool first, bool second, bool third);
    /// The engine's dialog for naming a new drawing; `pending` are names already taken. True when
    /// the user confirmed.
    virtual bool DlgInsertNewDrawingName(QWidget* parent, std::vector<orv::String>& pending,
        int type, const orv::String& caption, const orv::String& label, orv::String& name);

    virtual int GetNoStyles();
    virtual std::int64_t GetStyle(int index);
    virtual orv::String GetStyleName(std::int64_t style);
    /// Radians to and from the engine's current angle unit.
    virtual double RadiansToUnits(double radians);
    virtual double UnitsToRadians(double units);
    /// 0xRRGGBB of a colour index.
    virtual int GetColorRef(int colour);
    virtual bool DlgColorChoice(QWidget* parent, short& colour, bool reserved);
    virtual bool ShowDlgSelHatchType(int& hatchType);
    virtual int GetNuTotLineType();
    virtual CLineType* GetLineType(int index);

private:
    friend class embedded::Engine;
    class Impl;
    std::unique_ptr<Impl> m_impl;
};
