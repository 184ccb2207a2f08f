// A host in C# that judges one order file: Judge <connection string> <order file> <signer>...
//
// The library must be where the runtime looks for native ones: signutils.dll beside the program,
// or libsignutils.so on the system's way to libraries.

using System;
using System.Runtime.InteropServices;
using System.Text;

static class Native
{
    const string Library = "signutils";

    // As SignUtilsCheck in signutils_c.h, field for field.
    [StructLayout(LayoutKind.Sequential)]
    public struct Check
    {
        public uint Size;
        public int Ran, RulesComplete, LookupsComplete, AmountsKnown;
        public uint Verdict;
        public double TotalAmount, MaxOrderAmount;
        public int OrderCount;
        public uint RowsDue, RowsWritten;
        public int Journal, Report;
        public uint ReportFileId;
        public IntPtr Problem, AmountsProblem, Currency, ReasonCode, ReasonText, ReportProblem;
    }

    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern IntPtr SignUtilsErrorText(IntPtr session);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsCreate(IntPtr trace, byte[] logFile, out IntPtr session);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern void SignUtilsDestroy(IntPtr session);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsSetConnexionString(IntPtr session, byte[] connexionString);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsSetContractInfo(IntPtr session, uint contractType,
        uint protocol, byte[] partner, byte[] service, byte[] client, int serverMode,
        byte[] handOffTarget);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsSetAmountInfo(IntPtr session, double totalAmount,
        double maxOrderAmount, byte[] currency);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsCheckSignRules(IntPtr session, byte[] fileName,
        byte[] signers, out uint verdict);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    public static extern int SignUtilsGetLastCheck(IntPtr session, ref Check check);
}

sealed class Session : IDisposable
{
    IntPtr handle;

    public Session()
    {
        Require(Native.SignUtilsCreate(IntPtr.Zero, null, out handle), IntPtr.Zero);
    }

    public void Dispose()
    {
        Native.SignUtilsDestroy(handle);
        handle = IntPtr.Zero;
    }

    public void SetUp(string connexionString)
    {
        Require(Native.SignUtilsSetConnexionString(handle, Utf8(connexionString)));
        Require(Native.SignUtilsSetContractInfo(handle, 1, 9, Utf8("PARTNER1"), Utf8("SERVICE1"),
                                                Utf8("CLIENT1"), 1, null));
        Require(Native.SignUtilsSetAmountInfo(handle, 950.00, 400.00, Utf8("EUR")));
    }

    // The texts of the result belong to the session and last until its next call.
    public Native.Check Judge(string file, string signers)
    {
        uint verdict;
        Require(Native.SignUtilsCheckSignRules(handle, Utf8(file), Utf8(signers), out verdict));
        var check = new Native.Check { Size = (uint)Marshal.SizeOf(typeof(Native.Check)) };
        Require(Native.SignUtilsGetLastCheck(handle, ref check));
        return check;
    }

    public static string Text(IntPtr utf8)
    {
        int length = 0;
        while (Marshal.ReadByte(utf8, length) != 0)
        {
            ++length;
        }
        var bytes = new byte[length];
        Marshal.Copy(utf8, bytes, 0, length);
        return Encoding.UTF8.GetString(bytes);
    }

    static byte[] Utf8(string text)
    {
        return Encoding.UTF8.GetBytes(text + "\0");
    }

    void Require(int status)
    {
        Require(status, handle);
    }

    static void Require(int status, IntPtr session)
    {
        if (status != 0)
        {
            throw new InvalidOperationException(Text(Native.SignUtilsErrorText(session)));
        }
    }
}

static class Program
{
    static int Main(string[] arguments)
    {
        if (arguments.Length < 3)
        {
            Console.Error.WriteLine("usage: judge <connection string> <order file> <signer>...");
            return 64;
        }
        try
        {
            using (var session = new Session())
            {
                session.SetUp(arguments[0]);
                var signers = string.Join(";", arguments, 2, arguments.Length - 2);
                return Tell(arguments[1], session.Judge(arguments[1], signers));
            }
        }
        catch (InvalidOperationException refused)
        {
            Console.Error.WriteLine("not judged: " + refused.Message);
            return 3;
        }
    }

    // The verdict alone is not enough: see what it rests on.
    static int Tell(string file, Native.Check check)
    {
        if (check.Ran == 0 || check.RulesComplete == 0 || check.LookupsComplete == 0 ||
            check.AmountsKnown == 0)
        {
            Console.Error.WriteLine("not judged: " + Session.Text(check.Problem));
            return 3;
        }
        var words = check.Verdict == 1 ? "accepted" : check.Verdict == 2 ? "refused" : "no rule";
        Console.WriteLine(file + ": " + words + " " + Session.Text(check.ReasonCode));
        return check.Verdict == 1 ? 0 : 1;
    }
}
