// SPDX-License-Identifier: MIT
// Makes a unit of each type library, in the present folder: KorvaCollection_1_0_TLB.pas and so on.
//   ImportUnits KorvaCollection.tlb RavloBase.tlb RavloScheduler.tlb
program ImportUnits;
{$mode objfpc}{$H+}
uses
  ActiveX, Classes, StrUtils, SysUtils, typelib;

// The importer cuts a property with several parameters to the first one. These two lines bring the others back; the
// properties go, so call Get_colCuts and Get_NextCutFromRotation.
function Mended(const sUnit: string): string;
var
  colLines: TStringList;
  l: Integer;
begin
  colLines := TStringList.Create;
  try
    colLines.Text := StringsReplace(sUnit,
      ['Get_colCuts(sCatName:WideString)', 'Get_NextCutFromRotation(strSubCatKey:WideString)'],
      ['Get_colCuts(sCatName:WideString;lCatLevel:Integer)',
       'Get_NextCutFromRotation(strSubCatKey:WideString;bMustBeOpener:WordBool;cPrevSchedCut:_clsCut;' +
       'var cMainCat:_clsCat;var cSubCat:_clsCat;var sMainCatKey:WideString;bForEditablePlaylist:WordBool;bSave:WordBool)'],
      [rfReplaceAll]);
    for l := colLines.Count - 1 downto 0 do
      if AnsiStartsStr('property colCuts[', Trim(colLines[l])) or
         AnsiStartsStr('property NextCutFromRotation[', Trim(colLines[l])) then
        colLines.Delete(l);
    Result := colLines.Text;
  finally
    colLines.Free;
  end;
end;

procedure Import(const sTypeLibrary: string);
var
  cImporter: TTypeLibImporter;
  cFile: TFileStream;
  sUnit: string;
begin
  cImporter := TTypeLibImporter.Create(nil);
  try
    cImporter.InputFileName := sTypeLibrary;
    cImporter.Execute;
    sUnit := Mended(cImporter.UnitSource.Text);
    cFile := TFileStream.Create(cImporter.UnitName + '.pas', fmCreate);
    try
      cFile.WriteBuffer(sUnit[1], Length(sUnit));
    finally
      cFile.Free;
    end;
  finally
    cImporter.Free;
  end;
end;

var
  l: Integer;
begin
  CoInitialize(nil);
  for l := 1 to ParamCount do
    Import(ParamStr(l));
end.
