#pragma once

class CP_RGBColor;

// Asks the user for a colour. True when the user pressed OK; `outResult` then has the colour, at 8
// bits a channel in the high bytes. The dialog belongs to `gDialogOwner`, has a title of its own
// and always opens on black: `inTitle` and `inInitial` are not used. The user's custom colours are
// kept from call to call.
bool ChooseColorDialog(const char* inTitle, const CP_RGBColor& inInitial, CP_RGBColor& outResult);
