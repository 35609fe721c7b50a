// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/Export.h"

#include <memory>

class QImage;
class QWidget;
class CDravoEng;

/// A point symbol of the drawing.
class TEMATICA_HOST_API CSymbol {
public:
    virtual ~CSymbol();
    /// The symbol's image, or null. Owner: the symbol.
    virtual const QImage* GetBitmap() = 0;
};

/// The drawing's point symbols by id.
/// Owner, thread: the host's; call on the user-interface thread.
class TEMATICA_HOST_API CDocSymbolManager {
public:
    CDocSymbolManager();
    CDocSymbolManager(const CDocSymbolManager&) = delete;
    CDocSymbolManager& operator=(const CDocSymbolManager&) = delete;
    virtual ~CDocSymbolManager();
    /// Null for an unknown id.
    virtual CSymbol* GetSymbol(int id);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The host's symbol chooser; true with another `id` when the user chose one.
TEMATICA_HOST_API bool FDlgSceltaSymbol(
    QWidget* parent, CDravoEng* engine, CDocSymbolManager* symbols, int& id);
