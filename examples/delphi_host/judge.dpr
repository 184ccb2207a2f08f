// A host in Delphi (or Free Pascal) that judges one order file:
//
//   judge <connection string> <order file> <signer>...
program judge;

{$APPTYPE CONSOLE}
{$IFDEF FPC}
  {$MODE DELPHIUNICODE}
{$ENDIF}

uses
  {$IFDEF UNIX}
  cwstring,
  {$ENDIF}
  SysUtils;

const
  {$IFDEF MSWINDOWS}
  SignUtilsLibrary = 'signutils.dll';
  {$ELSE}
  SignUtilsLibrary = 'signutils';
  {$ENDIF}

type
  TSession = Pointer;

  // As SignUtilsCheck in signutils_c.h, field for field.
  TCheck = record
    Size: Cardinal;
    Ran, RulesComplete, LookupsComplete, AmountsKnown: Integer;
    Verdict: Cardinal;
    TotalAmount, MaxOrderAmount: Double;
    OrderCount: Integer;
    RowsDue, RowsWritten: Cardinal;
    Journal, Report: Integer;
    ReportFileId: Cardinal;
    Problem, AmountsProblem, Currency, ReasonCode, ReasonText, ReportProblem: PAnsiChar;
  end;

function SignUtilsErrorText(Session: TSession): PAnsiChar; cdecl; external SignUtilsLibrary;
function SignUtilsCreate(Trace: Pointer; LogFile: PAnsiChar; out Session: TSession): Integer;
  cdecl; external SignUtilsLibrary;
procedure SignUtilsDestroy(Session: TSession); cdecl; external SignUtilsLibrary;
function SignUtilsSetConnexionString(Session: TSession; ConnexionString: PAnsiChar): Integer;
  cdecl; external SignUtilsLibrary;
function SignUtilsSetContractInfo(Session: TSession; ContractType, Protocol: Cardinal;
  Partner, Service, Client: PAnsiChar; ServerMode: Integer; HandOffTarget: PAnsiChar): Integer;
  cdecl; external SignUtilsLibrary;
function SignUtilsSetAmountInfo(Session: TSession; TotalAmount, MaxOrderAmount: Double;
  Currency: PAnsiChar): Integer; cdecl; external SignUtilsLibrary;
function SignUtilsCheckSignRules(Session: TSession; FileName, Signers: PAnsiChar;
  out Verdict: Cardinal): Integer; cdecl; external SignUtilsLibrary;
function SignUtilsGetLastCheck(Session: TSession; var Check: TCheck): Integer;
  cdecl; external SignUtilsLibrary;

function FromUtf8(Text: PAnsiChar): string;
begin
  Result := UTF8ToString(RawByteString(Text));
end;

procedure Require(Session: TSession; Status: Integer);
begin
  if Status <> 0 then
    raise Exception.Create(FromUtf8(SignUtilsErrorText(Session)));
end;

// The texts of the result belong to the session and last until its next call.
function CheckOrder(Session: TSession): TCheck;
var
  Signers: string;
  Verdict: Cardinal;
  Index: Integer;
begin
  Require(Session, SignUtilsSetConnexionString(Session, PAnsiChar(UTF8Encode(ParamStr(1)))));
  Require(Session, SignUtilsSetContractInfo(Session, 1, 9, 'PARTNER1', 'SERVICE1', 'CLIENT1', 1,
    nil));
  Require(Session, SignUtilsSetAmountInfo(Session, 950.00, 400.00, 'EUR'));
  Signers := '';
  for Index := 3 to ParamCount do
    Signers := Signers + ParamStr(Index) + ';';
  Require(Session, SignUtilsCheckSignRules(Session, PAnsiChar(UTF8Encode(ParamStr(2))),
    PAnsiChar(UTF8Encode(Signers)), Verdict));
  Result.Size := SizeOf(Result);
  Require(Session, SignUtilsGetLastCheck(Session, Result));
end;

// The verdict alone is not enough: see what it rests on.
procedure Tell(const Check: TCheck);
begin
  if (Check.Ran = 0) or (Check.RulesComplete = 0) or (Check.LookupsComplete = 0) or
    (Check.AmountsKnown = 0) then
    raise Exception.Create(FromUtf8(Check.Problem));
  Write(ParamStr(2), ': ');
  case Check.Verdict of
    1: Write('accepted');
    2: Write('refused');
  else
    Write('no rule');
  end;
  Writeln(' ', FromUtf8(Check.ReasonCode));
  if Check.Verdict <> 1 then
    ExitCode := 1;
end;

var
  Session: TSession;
begin
  if ParamCount < 3 then
  begin
    Writeln(ErrOutput, 'usage: judge <connection string> <order file> <signer>...');
    Halt(64);
  end;
  Session := nil;
  try
    Require(nil, SignUtilsCreate(nil, nil, Session));
    try
      Tell(CheckOrder(Session));
    finally
      SignUtilsDestroy(Session);
    end;
  except
    on Refused: Exception do
    begin
      Writeln(ErrOutput, 'not judged: ', Refused.Message);
      ExitCode := 3;
    end;
  end;
end.
