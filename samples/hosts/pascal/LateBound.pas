// SPDX-License-Identifier: MIT
// A playout host that is bound late: it needs no imported unit, and the compiler checks no name. It fills a small
// library, asks for three cuts and reports their plays.
//   LateBound FOLDER
program LateBound;
{$mode objfpc}{$H+}
uses
  ActiveX, ComObj, SysUtils, Variants;

procedure AddCuts(cDataBase: OleVariant);
var
  colNew, cCut: OleVariant;
  l: Integer;
begin
  colNew := CreateOleObject('KorvaCollection.clsCollection');
  for l := 1 to 3 do
  begin
    cCut := cDataBase.NewCut;
    cCut.Key := 'C:\Music\' + IntToStr(l) + '.mp3';
    cCut.Artist := 'Artist' + IntToStr(l);
    cCut.Title := 'Song' + IntToStr(l);
    cCut.CategoryText := 'Rock';
    cCut.CatLevel := 1;
    cCut.RunTimemS := 180000;
    colNew.Add(cCut, cCut.Key);
  end;
  cDataBase.AddCuts(colNew);
end;

procedure Run(const sFolder: string);
var
  cDataBase, cSchedMan, cCut, cMainCat, cSubCat, sMainCatKey, cNothing: OleVariant;
  sPlayed: string;
  l: Integer;
begin
  cDataBase := CreateOleObject('RavloBase.clsDataBase');
  cDataBase.Open(sFolder + '\host.db');
  AddCuts(cDataBase);
  cSchedMan := CreateOleObject('RavloScheduler.clsSchedMan');
  cSchedMan.PopulateFromDataBase(cDataBase, sFolder);
  cSchedMan.RotatesAllowed := True;
  cNothing := IDispatch(nil);
  for l := 1 to 3 do
  begin
    cCut := cSchedMan.NextCutFromRotation('Rock'#9'1', False, cNothing, cMainCat, cSubCat, sMainCatKey);
    sPlayed := sPlayed + cCut.Title + ' ';
    cCut.LastPlayed := Now;
    cSchedMan.UpdateArtistTitleHistory(cCut);
  end;
  WriteLn('Played: ', sPlayed);
  WriteLn('ALL OK');
end;

begin
  CoInitialize(nil);
  Run(ParamStr(1));
end.
