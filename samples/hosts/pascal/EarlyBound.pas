// SPDX-License-Identifier: MIT
program EarlyBound;
{$mode objfpc}{$H+}
// A playout host that is bound early, through the units that ImportUnits makes: it fills a small library, asks for three
// cuts, reports their plays and counts the scheduler's progress events.
//   EarlyBound FOLDER
uses
  ActiveX, Classes, SysUtils, Variants, KorvaCollection_1_0_TLB, RavloBase_1_0_TLB, RavloScheduler_1_0_TLB;

type
  TListener = class
    lStarted: Integer;
    procedure Started(Sender: TObject; sReason: WideString; lMax: Integer);
  end;

procedure TListener.Started(Sender: TObject; sReason: WideString; lMax: Integer);
begin
  Inc(lStarted);
end;

procedure AddCuts(const cDataBase: _clsDataBase);
var
  colNew: _clsCollection;
  cCut: _clsCut;
  l: Integer;
begin
  colNew := CoclsCollection.Create;
  for l := 1 to 3 do
  begin
    cCut := cDataBase.NewCut;
    cCut.Key := 'C:\Music\' + IntToStr(l) + '.mp3';
    cCut.Artist := 'Artist' + IntToStr(l);
    cCut.Title := 'Song' + IntToStr(l);
    cCut.CategoryText := 'Rock';
    cCut.CatLevel := 1;
    cCut.RunTimemS := 180000;
    colNew.Add(cCut, cCut.Key, EmptyParam, EmptyParam);
  end;
  cDataBase.AddCuts(colNew);
end;

procedure Run(const sFolder: WideString);
var
  cDataBase: _clsDataBase;
  cEvents: TEvsclsSchedMan;
  cListener: TListener;
  cSchedMan: _clsSchedMan;
  cMainCat, cSubCat: _clsCat;
  cCut: _clsCut;
  sMainCatKey, sPlayed: WideString;
  l: Integer;
begin
  cDataBase := CoclsDataBase.Create;
  cDataBase.Open(sFolder + '\host.db');
  AddCuts(cDataBase);

  // The class with the events creates the scheduler as well.
  cListener := TListener.Create;
  cEvents := TEvsclsSchedMan.Create(nil);
  cEvents.OnProgressStart := @cListener.Started;
  cSchedMan := cEvents.ComServer;
  cSchedMan.PopulateFromDataBase(cDataBase, sFolder);
  cSchedMan.RotatesAllowed := True;

  for l := 1 to 3 do
  begin
    cCut := cSchedMan.Get_NextCutFromRotation('Rock'#9'1', False, nil, cMainCat, cSubCat, sMainCatKey, False, True);
    sPlayed := sPlayed + cCut.Title + ' ';
    cCut.LastPlayed := Now;
    cSchedMan.UpdateArtistTitleHistory(cCut);
  end;
  WriteLn('Played: ', sPlayed);
  WriteLn('Cuts of Rock 1: ', cSchedMan.Get_colCuts('Rock', 1).Count, ', in order: ', cSubCat.Get_SchedCuts.Count);
  if cListener.lStarted > 0 then
    WriteLn('ALL OK');
  cEvents.Free;
  cListener.Free;
end;

begin
  CoInitialize(nil);
  Run(ParamStr(1));
end.
